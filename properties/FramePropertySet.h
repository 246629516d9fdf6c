#pragma once

#include <memory>

#include "bands/BandTypes.h"
#include "properties/KestMultispectralPropertySetIterator.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/ReadImageFile.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// What a frame publishes about its band.
struct BandFacts {
    Pyxis::StringBuffer referenceName;
    Pyxis::StringBuffer bandName;
    Pyxis::FileSpecifier component;
    int frameNumber = 0;  ///< within the component
    int indexInBucket = 0;
    BandType bandType = BandType::Unknown;
    BandAssignment bandAssignment = BandAssignment::NotAssigned;
    int bucketIndex = 0;
    int numBuckets = 0;
    Pyxis::StringBuffer bucketName;
};

/// The properties of the component's frame, those of the whole set, then the band's own: reference
/// name, band name, band type, bucket; duplicate names stay (compatibility.md, 21). A null
/// `componentFrame` contributes nothing; a property that cannot be allocated is left out. Throws
/// when the set itself cannot be built.
std::unique_ptr<KestMultispectralPropertySetIterator> buildFramePropertySet(
    Pyxis::ReadImageFileFrameInterface* componentFrame,
    KestMultispectralPropertySetIterator& setProperties, const BandFacts& band);

}  // namespace kest
