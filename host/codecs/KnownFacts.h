#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace Pyxis {

/// Where a block of pixels lies in its file.
struct PixelBlock {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// What a file's own bytes tell of it, so that GDAL need not be asked: its answers make it load
/// everything that it knows of georeferences. The defaults know nothing.
struct KnownFacts {
    /// Bytes that alone decide which coordinate system GDAL finds in the file; empty when there are
    /// no such bytes. Working a system out costs far more than opening the file.
    std::string systemKey;
    /// GDAL's geotransform.
    std::optional<std::array<double, 6>> transform;
    bool mayNameOverviews = true;
    bool mayHaveDescription = true;
    bool mayHaveColours = true;
    /// The last of so many blocks of pixels.
    std::optional<PixelBlock> lastBlock;
    std::uint64_t blocks = 0;
};

}  // namespace Pyxis
