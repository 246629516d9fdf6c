#include "tool/raster/Quicklook.h"

#include <gdal_frmts.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <future>
#include <iterator>
#include <limits>
#include <vector>

#include "tool/raster/GdalSession.h"
#include "tool/raster/SmallCache.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

constexpr double kDarkPart = 0.02;
constexpr double kBrightPart = 0.98;
constexpr std::uint8_t kBrightest = std::numeric_limits<std::uint8_t>::max();

/// The raster scaled to the requested size. A small scene is enlarged by a whole number.
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
    Channel(GDALRasterBand& band, const OutputBand& source, const Pyxis::Size& size, bool isColour)
        : zeroIsFill_(isColour && band.GetMaskFlags() == GMF_ALL_VALID),
          values_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)) {
        const GdalSession session;
        const auto read = [&](GDALRasterBand& from, void* to, GDALDataType type) {
            throwIfInterrupted();
            if (from.RasterIO(GF_Read, 0, 0, from.GetXSize(), from.GetYSize(), to, size.width,
                              size.height, type, 0, 0, nullptr) != CE_None) {
                session.failToRead(source.band.componentPath);
            }
        };
        read(band, values_.data(), GDT_Float32);
        // A no-data value shows in the values; reading its mask would read them again.
        if (band.GetMaskFlags() == GMF_NODATA) {
            hide(band.GetNoDataValue());
        } else if (band.GetMaskFlags() != GMF_ALL_VALID) {
            std::vector<std::uint8_t> valid(values_.size());
            read(*band.GetMaskBand(), valid.data(), GDT_Byte);
            for (std::size_t i = 0; i < valid.size(); ++i) {
                values_[i] = valid[i] != 0 ? values_[i] : kNothing;
            }
        }
        stretch(static_cast<std::size_t>(size.width));
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
    static constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

    bool isValid(std::size_t pixel) const { return std::isfinite(values_[pixel]); }

    void hide(double noData) {
        std::replace(values_.begin(), values_.end(), static_cast<float>(noData), kNothing);
    }

    bool hasData(std::size_t pixel) const {
        return isValid(pixel) && !(zeroIsFill_ && values_[pixel] == 0);
    }

    /// Whether its neighbours have data, too. Compression and overviews mix values at the edges of
    /// what has none, which are dark then.
    bool isInside(std::size_t pixel, std::size_t width) const {
        const std::size_t column = pixel % width;
        return hasData(pixel) && (column == 0 || hasData(pixel - 1)) &&
               (column + 1 == width || hasData(pixel + 1)) &&
               (pixel < width || hasData(pixel - width)) &&
               (pixel + width >= values_.size() || hasData(pixel + width));
    }

    /// By the values inside the data; by all where those are one.
    void stretch(std::size_t width) {
        std::vector<float> inside;
        inside.reserve(values_.size());
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (isInside(i, width)) {
                inside.push_back(values_[i]);
            }
        }
        setLimits(std::move(inside));
        if (bright_ <= dark_) {
            std::vector<float> all;
            std::copy_if(values_.begin(), values_.end(), std::back_inserter(all),
                         [](float value) { return std::isfinite(value); });
            setLimits(std::move(all));
        }
    }

    void setLimits(std::vector<float> values) {
        if (values.empty()) {
            return;
        }
        const auto place = [&values](double part) {
            return values.begin() + std::lround(part * static_cast<double>(values.size() - 1));
        };
        std::nth_element(values.begin(), place(kDarkPart), values.end());
        dark_ = *place(kDarkPart);
        std::nth_element(place(kDarkPart), place(kBrightPart), values.end());
        bright_ = *place(kBrightPart);
    }

    /// Many producers fill the border of a scene with zero and do not say so; it would tint
    /// colours.
    bool zeroIsFill_;
    std::vector<float> values_;
    double dark_ = 0;
    double bright_ = 0;
};

/// On any thread.
Channel channelOf(const OutputRaster& raster, const OutputBand& band, const Pyxis::Size& size) {
    OutputRaster alone = raster;
    alone.bands = {band};
    const VirtualRaster pixels(alone, {});
    return Channel(*pixels.dataset().GetRasterBand(1), band, size, raster.bands.size() > 1);
}

}  // namespace

Picture drawQuicklook(const OutputRaster& raster, int longest) {
    GDALRegister_VRT();
    const SmallCache cache;
    const Pyxis::Size size = pictureSize(raster.size, longest);
    std::vector<std::future<Channel>> reads;
    reads.reserve(raster.bands.size());
    for (const OutputBand& band : raster.bands) {
        reads.push_back(
            std::async([&raster, &band, &size] { return channelOf(raster, band, size); }));
    }
    std::vector<Channel> channels;
    channels.reserve(reads.size());
    for (std::future<Channel>& read : reads) {
        channels.push_back(read.get());
    }
    // Some files have their lines from south to north; pictures have north at the top.
    const bool isWestward = raster.geoTransform[1] < 0;
    const bool isSouthUp = raster.geoTransform[5] > 0;
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
                picture.at(isWestward ? size.width - 1 - column : column,
                           isSouthUp ? size.height - 1 - row : row) = pixel;
            }
        }
    }
    return picture;
}

}  // namespace kestms
