#pragma once

#include "bands/BandTypes.h"
#include "pyxis/Geometry.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// One band of an opened set.
struct BandRecord {
    int componentIndex = 0;  ///< in the reader's own component list
    int bucketIndex = 0;     ///< in the reader's bucket list
    int indexInBucket = 0;
    BandType bandType = BandType::Unknown;
    BandAssignment bandAssignment = BandAssignment::NotAssigned;
    int bandNumber = 0;                              ///< sort key
    const Pyxis::ImageFormatCodec* codec = nullptr;  ///< reads the component; the host's
    Pyxis::StringBuffer bandName;
    BandDetails details;
};

/// The bands of a set that share one pixel size.
struct BucketRecord {
    int bandCount = 0;
    int bucketNumber = 0;  ///< sort key
    Pyxis::Vector2d bucketVector;
    Pyxis::StringBuffer bucketName;
};

}  // namespace kest
