#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// The place of a block of pixels in its file.
struct PixelBlock {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    bool isWithin(std::uint64_t fileSize) const {
        return offset <= fileSize && length <= fileSize - offset;
    }
};

/// The raster of a file with one band, as GDAL would describe it.
struct KnownRaster {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t blockWidth = 0;
    std::int32_t blockHeight = 0;
    std::int32_t bits = 0;  ///< of a sample
    SampleFormat format = SampleFormat::UnsignedInteger;
    ChannelRange range;
};

/// What is known of a file from its bytes, without GDAL. The defaults mean unknown.
struct KnownFacts {
    /// All bytes that determine the coordinate system: files with the same key have the same
    /// system, which is computed once. Empty when no such bytes are known.
    std::string systemKey;
    /// The EPSG code of the projected system, if GDAL will find the same; else 0. The code may be
    /// unregistered, or not that of a projected system.
    int projectedSystem = 0;
    /// GDAL's geotransform.
    std::optional<std::array<double, 6>> transform;
    bool mayNameOverviews = true;
    bool mayHaveDescription = true;
    bool mayHaveColours = true;
    /// The last of `blocks` blocks.
    std::optional<PixelBlock> lastBlock;
    std::uint64_t blocks = 0;
    /// All facts that opening the file would give. The file then need not be opened before pixels
    /// are read.
    std::optional<KnownRaster> raster;
};

}  // namespace Pyxis
