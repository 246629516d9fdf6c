#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// Where a block of pixels lies in its file.
struct PixelBlock {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    bool isWithin(std::uint64_t fileSize) const {
        return offset <= fileSize && length <= fileSize - offset;
    }
};

/// A raster of one band as GDAL would find it.
struct KnownRaster {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t blockWidth = 0;
    std::int32_t blockHeight = 0;
    std::int32_t bits = 0;  ///< of a sample
    SampleFormat format = SampleFormat::UnsignedInteger;
};

/// What a file's own bytes tell of it, so that GDAL need not be asked: its answers make it load
/// everything that it knows of georeferences. The defaults know nothing.
struct KnownFacts {
    /// Bytes that alone decide which coordinate system GDAL finds in the file; empty when there are
    /// no such bytes. Working a system out costs far more than opening the file.
    std::string systemKey;
    /// The EPSG code of that system where it is sure to be the one GDAL finds; else 0.
    int projectedSystem = 0;
    /// GDAL's geotransform.
    std::optional<std::array<double, 6>> transform;
    bool mayNameOverviews = true;
    bool mayHaveDescription = true;
    bool mayHaveColours = true;
    /// The last of so many blocks of pixels.
    std::optional<PixelBlock> lastBlock;
    std::uint64_t blocks = 0;
    /// All that opening the file would tell, which then waits until pixels are asked for.
    std::optional<KnownRaster> raster;
};

}  // namespace Pyxis
