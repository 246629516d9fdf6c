#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/file/WorldFile.h"
#include "pyxis/ReadImageFile.h"
#include "pyxis/StringBuffer.h"

namespace Pyxis {

/// Everything about a frame that needs no further access to its file.
struct FrameFacts {
    std::size_t part = 0;  ///< which of the file's datasets
    int band = 0;          ///< in that dataset, from 1
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t blockWidth = 0;
    std::int32_t blockHeight = 0;
    /// Memory that GDAL needs to read a pixel: a block, with all bands if they are interleaved.
    std::uint64_t bytesAtOnce = 0;
    SampleFormat format = SampleFormat::UnsignedInteger;
    std::int32_t bits = 0;              ///< of a sample
    std::string sampleType;             ///< GDAL's name for it
    std::vector<std::uint8_t> colours;  ///< red, green, blue, alpha; empty without a colour table
    std::string label;                  ///< the file's name for the band; may be empty
    std::optional<ChannelRange> range;  ///< if known without GDAL
    std::string ownText;  ///< the format's own property of the band: a letter, a file's name
};

struct CoordinateSystem {
    StringBuffer text;  ///< wide: WKT2, on one line; empty when the file gives none
    int code = 0;       ///< EPSG code; 0 when there is none
};

/// How the georeference of a raster is found. Unknown parts come from GDAL, which then loads its
/// whole georeferencing.
struct PlaceFacts {
    std::optional<GeoTransform> transform;
    /// Bytes that alone determine the coordinate system that GDAL finds in the file; empty when
    /// there are none. Computing a system costs far more than opening the file.
    std::string systemKey;
    /// The coordinate system in a side file, as GDAL writes it; empty without one.
    std::string systemText;
    /// The EPSG code of that system if GDAL will surely find the same; else 0.
    int projectedSystem = 0;
};

/// All facts about a raster file: an immutable value that its format builds.
struct RasterFacts {
    std::vector<FrameFacts> frames;
    std::vector<std::string> otherFiles;  ///< of the image, besides the opened one
    std::string description;              ///< of the file as a whole
    PlaceFacts place;
};

}  // namespace Pyxis
