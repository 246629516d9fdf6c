#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/file/WorldFile.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// What a frame answers without touching its file again.
struct FrameFacts {
    std::size_t part = 0;  ///< which of the file's datasets
    int band = 0;          ///< in that dataset, from 1
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t blockWidth = 0;
    std::int32_t blockHeight = 0;
    /// What GDAL holds at once to read a pixel: a block, with all bands where they are interleaved.
    std::uint64_t bytesAtOnce = 0;
    SampleFormat format = SampleFormat::UnsignedInteger;
    std::int32_t bits = 0;              ///< of a sample
    std::string sampleType;             ///< GDAL's name for it
    std::vector<std::uint8_t> colours;  ///< red, green, blue, alpha; empty without a colour table
    std::string label;                  ///< what the file calls the band; may be empty
    std::optional<ChannelRange> range;  ///< where GDAL need not be asked
    std::string ownText;  ///< what the format itself says of the band: a letter, a file's name
};

/// How the place of a raster is found. What is not known here GDAL is asked for, which makes it
/// load everything that it knows of georeferences.
struct PlaceFacts {
    std::optional<GeoTransform> transform;
    /// Bytes that alone decide which coordinate system GDAL finds in the file; empty when there are
    /// no such bytes. Working a system out costs far more than opening the file.
    std::string systemKey;
    /// What a side file says is the coordinate system, in GDAL's own words; empty when none does.
    std::string systemText;
    /// The EPSG code of that system where it is sure to be the one GDAL finds; else 0.
    int projectedSystem = 0;
};

/// What is known of a raster file: a value that its format builds once and nobody changes.
struct RasterFacts {
    std::vector<FrameFacts> frames;
    std::vector<std::string> otherFiles;  ///< that the image is made of, beside the opened one
    std::string description;              ///< what the file says of itself as a whole
    PlaceFacts place;
};

}  // namespace Pyxis
