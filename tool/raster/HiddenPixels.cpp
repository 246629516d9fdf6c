#include "tool/raster/HiddenPixels.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tool/raster/GdalSession.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/NumberText.h"

namespace kestms {
namespace {

std::uint64_t countHidden(GDALRasterBand& band, const std::string& path, double value) {
    const GdalSession session;
    constexpr int kRows = 64;
    const int width = band.GetXSize();
    std::vector<double> samples(static_cast<std::size_t>(width) * kRows);
    std::vector<std::uint8_t> mask(samples.size());
    std::uint64_t hidden = 0;
    for (int y = 0; y < band.GetYSize(); y += kRows) {
        throwIfInterrupted();
        const int rows = std::min(kRows, band.GetYSize() - y);
        const auto read = [&](GDALRasterBand& from, void* to, GDALDataType type) {
            return from.RasterIO(GF_Read, 0, y, width, rows, to, width, rows, type, 0, 0,
                                 nullptr) == CE_None;
        };
        if (!read(band, samples.data(), GDT_Float64) ||
            !read(*band.GetMaskBand(), mask.data(), GDT_Byte)) {
            session.failToRead(path);
        }
        const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(rows);
        for (std::size_t i = 0; i < count; ++i) {
            hidden += mask[i] != 0 && samples[i] == value ? 1 : 0;
        }
    }
    return hidden;
}

}  // namespace

std::string hiddenPixelsNote(const OutputRaster& raster, const std::string& resampling,
                             double value) {
    VirtualRasterOptions options;
    options.resampling = resampling;
    const VirtualRaster pixels(raster, options);
    std::string bands;
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        const Band& band = raster.bands[i].band;
        if (band.noData == value) {
            continue;
        }
        const std::uint64_t hidden = countHidden(
            *pixels.dataset().GetRasterBand(static_cast<int>(i) + 1), band.componentPath, value);
        if (hidden > 0) {
            bands += (bands.empty() ? "" : ", ") + std::to_string(hidden) + " in " + band.name;
        }
    }
    return bands.empty()
               ? ""
               : "pixels with data that have the value " + numberText(value) + " lose it: " + bands;
}

}  // namespace kestms
