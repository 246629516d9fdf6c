#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "bands/BandTypes.h"
#include "pyxis/Geometry.h"
#include "pyxis/ReadImageFile.h"

namespace kestms {

/// The georeference of a band, in units of its coordinate system.
struct Georeference {
    double pixelWidth = 0.0;
    double pixelHeight = 0.0;
    double rotation = 0.0;  ///< radians, counter-clockwise
    Pyxis::Point2d upperLeft;
    Pyxis::Point2d upperRight;
    Pyxis::Point2d lowerLeft;
    Pyxis::Point2d lowerRight;
    /// WKT, never null; bands share it.
    std::shared_ptr<const std::string> coordinateSystem = std::make_shared<std::string>();
    int epsg = 0;  ///< 0: no code
};

/// Everything the tool knows about one band of an opened set; the base holds the codec's details.
/// Texts are UTF-8.
struct Band : kest::BandDetails {
    // From the plug-in.
    int frame = 0;     ///< in the set
    std::string name;  ///< the plug-in's, or that of `labelBands` if the plug-in only counts
    kest::BandType type = kest::BandType::Unknown;
    kest::BandAssignment assignment = kest::BandAssignment::NotAssigned;
    int bucket = 0;  ///< index in the set
    int indexInBucket = 0;
    std::string bucketName;
    std::string componentPath;
    int componentFrame = 0;

    // Its pixels.
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 0;
    Pyxis::PixelModel model = Pyxis::PixelModel::SingleChannel;
    Pyxis::SampleFormat format = Pyxis::SampleFormat::UnsignedInteger;
    Pyxis::Size block;  ///< the natural block of the file
    std::optional<double> noData;
    std::optional<Georeference> georeference;

    // The component's own names for it; may be empty.
    std::string label;            ///< in the file
    std::string sideDescription;  ///< in its auxiliary file
};

/// Bands that share one pixel size.
struct Bucket {
    int index = 0;
    int number = 0;  ///< sort key
    std::string name;
    int bandCount = 0;
    double pixelWidth = 0.0;
    double pixelHeight = 0.0;
};

}  // namespace kestms
