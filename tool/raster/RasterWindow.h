#pragma once

#include <gdal_priv.h>

#include <cstddef>
#include <vector>

namespace kestms {

/// A part of a raster, in pixels from its upper-left corner.
struct RasterWindow {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    std::size_t area() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

/// The side of the tiles that GDAL writes by default.
inline constexpr int kTileSide = 256;

/// The windows in which to copy a raster where blocks have so many lines: whole lines of blocks, so
/// that each is read or written once and in the order of the file, or parts of lines where those
/// are too long. At most 32 MiB each. Tiles of 256 pixels are never cut; if all blocks are tiles of
/// 256, 512 or 1024 pixels, and pixels have up to 16 bytes, none is.
std::vector<RasterWindow> windowsOf(GDALDataset& raster, std::size_t pixelBytes,
                                    const std::vector<int>& blockRows);

/// Reads or writes the samples of a window, line by line. Returns whether GDAL could do it.
bool readWindow(GDALRasterBand& band, const RasterWindow& window, GDALDataType type, void* samples);
bool writeWindow(GDALRasterBand& band, const RasterWindow& window, GDALDataType type,
                 void* samples);

}  // namespace kestms
