#include "tool/raster/Quicklook.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

constexpr double kDarkPart = 0.02;
constexpr double kBrightPart = 0.98;
constexpr std::uint8_t kBrightest = std::numeric_limits<std::uint8_t>::max();

/// The raster brought to the size that was asked for. A small scene is enlarged by a whole number.
Pyxis::Size pictureSize(const Pyxis::Size& raster, int longest) {
    const int side = std::max({raster.width, raster.height, 1});
    const int times = std::max(longest / side, 1);
    const double factor = side > longest ? static_cast<double>(longest) / side : times;
    const auto scaled = [factor](std::int32_t pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * factor)));
    };
    return {scaled(raster.width), scaled(raster.height)};
}

/// One channel of the picture: a band, stretched.
class Channel {
  public:
    Channel(GDALRasterBand& band, const OutputBand& source, const Pyxis::Size& size)
        : values_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
          valid_(values_.size()) {
        const auto read = [&](GDALRasterBand& from, void* to, GDALDataType type) {
            throwIfInterrupted();
            return from.RasterIO(GF_Read, 0, 0, from.GetXSize(), from.GetYSize(), to, size.width,
                                 size.height, type, 0, 0, nullptr) == CE_None;
        };
        const Pyxis::ErrorCapture errors;
        if (!read(band, values_.data(), GDT_Float32) ||
            !read(*band.GetMaskBand(), valid_.data(), GDT_Byte)) {
            throw Failure(ExitCode::CannotRead, source.band.componentPath,
                          "its pixels cannot be read");
        }
        stretch();
    }

    /// False, with nothing written, where the band has no data.
    bool shade(std::size_t pixel, std::uint8_t& sample) const {
        if (!isValid(pixel)) {
            return false;
        }
        const double part = bright_ > dark_ ? (values_[pixel] - dark_) / (bright_ - dark_) : 0.5;
        sample = static_cast<std::uint8_t>(std::lround(kBrightest * std::clamp(part, 0.0, 1.0)));
        return true;
    }

  private:
    bool isValid(std::size_t pixel) const {
        return valid_[pixel] != 0 && std::isfinite(values_[pixel]);
    }

    void stretch() {
        std::vector<float> sorted;
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (isValid(i)) {
                sorted.push_back(values_[i]);
            }
        }
        if (!sorted.empty()) {
            const auto quantile = [&sorted](double part) {
                const auto place = std::lround(part * static_cast<double>(sorted.size() - 1));
                std::nth_element(sorted.begin(), sorted.begin() + place, sorted.end());
                return sorted[static_cast<std::size_t>(place)];
            };
            dark_ = quantile(kDarkPart);
            bright_ = quantile(kBrightPart);
        }
    }

    std::vector<float> values_;
    std::vector<std::uint8_t> valid_;
    double dark_ = 0;
    double bright_ = 0;
};

}  // namespace

Picture drawQuicklook(const OutputRaster& raster, int longest) {
    VirtualRasterOptions paths;
    paths.paths = VirtualRasterOptions::Paths::Absolute;
    const VirtualRaster pixels(raster, paths);
    const GdalSession session;
    const Pyxis::Size size = pictureSize(raster.size, longest);
    std::vector<Channel> channels;
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        channels.emplace_back(*pixels.dataset().GetRasterBand(static_cast<int>(i) + 1),
                              raster.bands[i], size);
    }
    Picture picture(size.width, size.height);
    for (int row = 0; row < size.height; ++row) {
        throwIfInterrupted();
        for (int column = 0; column < size.width; ++column) {
            const std::size_t place =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(size.width) +
                static_cast<std::size_t>(column);
            Picture::Pixel pixel{};
            bool hasData = true;
            for (std::size_t i = 0; i + 1 < pixel.size(); ++i) {
                hasData =
                    channels[std::min(i, channels.size() - 1)].shade(place, pixel[i]) && hasData;
            }
            if (hasData) {
                pixel.back() = kBrightest;
                picture.at(column, row) = pixel;
            }
        }
    }
    return picture;
}

}  // namespace kestms
