#include "tool/raster/PlacedPixels.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kestms {
namespace {

Pyxis::SampleFormat formatOf(GDALDataType type) {
    if (GDALDataTypeIsComplex(type) != FALSE) {
        return Pyxis::SampleFormat::Complex;
    }
    if (GDALDataTypeIsFloating(type) != FALSE) {
        return Pyxis::SampleFormat::FloatingPoint;
    }
    return GDALDataTypeIsSigned(type) != FALSE ? Pyxis::SampleFormat::SignedInteger
                                               : Pyxis::SampleFormat::UnsignedInteger;
}

/// One axis of the way from the output raster to the band.
struct Axis {
    int start;   ///< of the band's window in the output raster
    int size;    ///< of that window
    int pixels;  ///< of the band

    /// The band's pixel under the middle of the output's.
    int pixelAt(int position) const {
        return static_cast<int>((2 * std::int64_t{position - start} + 1) * pixels /
                                (2 * std::int64_t{size}));
    }
};

std::size_t area(const PixelWindow& window) {
    return static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height);
}

}  // namespace

PlacedPixels::PlacedPixels(const OpenedSet& set, const PlacedBand& placed, GDALDataType type)
    : placed_(placed),
      frame_(set.openFrame(placed.band->frame)),
      type_(type),
      ownType_(type == GDALGetDataTypeByName(placed.source.dataType.c_str())),
      sampleBytes_(static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type))),
      fill_(placed.band->noData.value_or(0.0)) {}

void PlacedPixels::readSource(const PixelWindow& source, std::vector<std::byte>& samples) const {
    samples.resize(area(source) * sampleBytes_);
    Pyxis::PixelRequest request;
    request.x = source.x;
    request.y = source.y;
    request.width = request.bufferWidth = source.width;
    request.height = request.bufferHeight = source.height;
    if (!ownType_) {
        request.sampleFormat = formatOf(type_);
        request.sampleBits = GDALGetDataTypeSizeBits(type_);
    }
    request.buffer = samples.data();
    request.bufferBytes = samples.size();
    if (!frame_->frameOp13(0, &request)) {
        throw Failure(ExitCode::CannotRead, placed_.band->componentPath,
                      "its pixels cannot be read");
    }
}

void PlacedPixels::read(const PixelWindow& window, std::vector<std::byte>& samples) const {
    const PixelWindow& whole = placed_.window;
    const int left = std::max(window.x, whole.x);
    const int top = std::max(window.y, whole.y);
    const int right = std::min(window.x + window.width, whole.x + whole.width);
    const int bottom = std::min(window.y + window.height, whole.y + whole.height);
    const bool covered = left == window.x && top == window.y && right == window.x + window.width &&
                         bottom == window.y + window.height;
    samples.resize(area(window) * sampleBytes_);
    if (!covered) {
        GDALCopyWords64(&fill_, GDT_Float64, 0, samples.data(), type_,
                        static_cast<int>(sampleBytes_), static_cast<GPtrDiff_t>(area(window)));
    }
    if (left >= right || top >= bottom) {
        return;
    }
    const Axis columns{whole.x, whole.width, placed_.band->width};
    const Axis rows{whole.y, whole.height, placed_.band->height};
    const PixelWindow source{columns.pixelAt(left), rows.pixelAt(top),
                             columns.pixelAt(right - 1) - columns.pixelAt(left) + 1,
                             rows.pixelAt(bottom - 1) - rows.pixelAt(top) + 1};
    std::vector<std::byte> pixels;
    if (covered && source.width == window.width && source.height == window.height) {
        readSource(source, samples);
        return;
    }
    readSource(source, pixels);
    for (int y = top; y < bottom; ++y) {
        const std::byte* line =
            pixels.data() + static_cast<std::size_t>(rows.pixelAt(y) - source.y) *
                                static_cast<std::size_t>(source.width) * sampleBytes_;
        std::byte* target = samples.data() + (static_cast<std::size_t>(y - window.y) *
                                                  static_cast<std::size_t>(window.width) +
                                              static_cast<std::size_t>(left - window.x)) *
                                                 sampleBytes_;
        for (int x = left; x < right; ++x, target += sampleBytes_) {
            const auto from = static_cast<std::size_t>(columns.pixelAt(x) - source.x);
            std::memcpy(target, line + from * sampleBytes_, sampleBytes_);
        }
    }
}

}  // namespace kestms
