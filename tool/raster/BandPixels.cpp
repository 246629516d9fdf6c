#include "tool/raster/BandPixels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace kestms {
namespace {

/// The size with its longer side brought down to `longest`.
Pyxis::Size reduced(Pyxis::Size size, int longest) {
    const double factor =
        std::min(1.0, static_cast<double>(longest) / std::max({size.width, size.height, 1}));
    const auto side = [factor](std::int32_t pixels) {
        return std::max(1, static_cast<std::int32_t>(std::lround(pixels * factor)));
    };
    return {side(size.width), side(size.height)};
}

}  // namespace

BandPixels::BandPixels(const OpenedSet& set, const Band& band, int longestSide)
    : placement_(placementOf(band)),
      size_{band.width, band.height},
      buffer_(reduced(size_, longestSide)),
      noData_(band.noData),
      values_(static_cast<std::size_t>(buffer_.width) * static_cast<std::size_t>(buffer_.height)) {
    const auto frame = set.openFrame(band.frame);
    Pyxis::PixelRequest request;
    request.width = size_.width;
    request.height = size_.height;
    request.bufferWidth = buffer_.width;
    request.bufferHeight = buffer_.height;
    request.sampleFormat = Pyxis::SampleFormat::FloatingPoint;
    request.sampleBits = 64;
    request.buffer = values_.data();
    request.bufferBytes = values_.size() * sizeof(double);
    if (!frame->frameOp13(0, &request)) {
        throw Failure(ExitCode::CannotRead, band.componentPath, "its pixels cannot be read");
    }
}

bool BandPixels::isValid(double value) const {
    return std::isfinite(value) && (!noData_ || value != *noData_);
}

std::optional<double> BandPixels::at(const Pyxis::Point2d& world) const {
    const Pyxis::Point2d place = placement_.toRaster(world);
    const double column = std::floor(place.x * buffer_.width / size_.width);
    const double row = std::floor(place.y * buffer_.height / size_.height);
    if (!(column >= 0 && row >= 0 && column < buffer_.width && row < buffer_.height)) {
        return std::nullopt;
    }
    const double value =
        values_[static_cast<std::size_t>(row) * static_cast<std::size_t>(buffer_.width) +
                static_cast<std::size_t>(column)];
    return isValid(value) ? std::optional(value) : std::nullopt;
}

std::vector<double> BandPixels::quantiles(const std::vector<double>& parts) const {
    std::vector<double> valid;
    std::copy_if(values_.begin(), values_.end(), std::back_inserter(valid),
                 [this](double value) { return isValid(value); });
    std::sort(valid.begin(), valid.end());
    std::vector<double> result;
    for (const double part : parts) {
        const auto place = static_cast<std::size_t>(
            std::lround(part * static_cast<double>(std::max<std::size_t>(valid.size(), 1) - 1)));
        result.push_back(valid.empty() ? 0.0 : valid[place]);
    }
    return result;
}

}  // namespace kestms
