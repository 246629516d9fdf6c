#include "tool/raster/RasterWindow.h"

#include <algorithm>

namespace kestms {
namespace {

bool moveWindow(GDALRWFlag direction, GDALRasterBand& band, const RasterWindow& window,
                GDALDataType type, void* samples) {
    return band.RasterIO(direction, window.x, window.y, window.width, window.height, samples,
                         window.width, window.height, type, 0, 0, nullptr) == CE_None;
}

}  // namespace

std::vector<RasterWindow> windowsOf(GDALDataset& raster, std::size_t pixelBytes,
                                    const std::vector<int>& blockRows) {
    constexpr std::size_t kMostBytes = 32 << 20;
    constexpr int kUsualRows = 2 * kTileSide;  // most blocks of components divide this
    constexpr int kMostRows = 2048;
    int rows = kUsualRows;
    for (const int each : blockRows) {
        rows = each <= kMostRows && each % kTileSide == 0 ? std::max(rows, each) : rows;
    }
    const int width = raster.GetRasterXSize();
    const int height = raster.GetRasterYSize();
    const auto most = static_cast<int>(kMostBytes / pixelBytes) / rows / kTileSide * kTileSide;
    const int columns = std::min(width, std::max(most, kTileSide));
    std::vector<RasterWindow> windows;
    for (int y = 0; y < height; y += rows) {
        for (int x = 0; x < width; x += columns) {
            windows.push_back({x, y, std::min(columns, width - x), std::min(rows, height - y)});
        }
    }
    return windows;
}

bool readWindow(GDALRasterBand& band, const RasterWindow& window, GDALDataType type,
                void* samples) {
    return moveWindow(GF_Read, band, window, type, samples);
}

bool writeWindow(GDALRasterBand& band, const RasterWindow& window, GDALDataType type,
                 void* samples) {
    return moveWindow(GF_Write, band, window, type, samples);
}

}  // namespace kestms
