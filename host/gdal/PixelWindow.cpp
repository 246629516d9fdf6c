#include "host/gdal/PixelWindow.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "host/gdal/SampleTypes.h"

namespace Pyxis {
namespace {

/// The type that the buffer shall hold; none when there is no such type or GDAL would convert to
/// it wrongly.
std::optional<GDALDataType> bufferType(GDALDataType own, SampleFormat format,
                                       const PixelRequest& request) {
    const bool ownAsked =
        request.sampleFormat == format && request.sampleBits == GDALGetDataTypeSizeBits(own);
    if (request.sampleBits == 0 || ownAsked) {
        return own;
    }
    return own == GDT_Byte && format == SampleFormat::SignedInteger
               ? std::nullopt
               : sampleTypeOf(request.sampleFormat, request.sampleBits);
}

bool windowInside(const GDALRasterBand& band, const PixelRequest& request) {
    auto& sized = const_cast<GDALRasterBand&>(band);  // GDAL's getters are not const
    return request.x >= 0 && request.y >= 0 && request.width > 0 && request.height > 0 &&
           request.width <= sized.GetXSize() - request.x &&
           request.height <= sized.GetYSize() - request.y;
}

struct Strides {
    GSpacing pixel = 0;
    GSpacing line = 0;
};

/// The strides in bytes; none when the samples would overlap or leave the buffer.
std::optional<Strides> stridesInBuffer(const PixelRequest& request, int sampleBytes) {
    if (request.buffer == nullptr || request.bufferWidth <= 0 || request.bufferHeight <= 0 ||
        request.pixelStride < 0 || request.lineStride < 0) {
        return std::nullopt;
    }
    const GSpacing columns = request.bufferWidth;
    const GSpacing lines = request.bufferHeight;
    Strides strides{request.pixelStride, request.lineStride};
    if (strides.pixel == 0) {
        strides.pixel = sampleBytes;
    }
    GSpacing lineBytes = 0;
    if (__builtin_mul_overflow(strides.pixel, columns, &lineBytes)) {
        return std::nullopt;
    }
    if (strides.line == 0) {
        strides.line = lineBytes;
    }
    GSpacing toLastLine = 0;
    GSpacing end = 0;
    if (strides.pixel < sampleBytes || strides.line < sampleBytes ||
        __builtin_mul_overflow(strides.line, lines - 1, &toLastLine) ||
        __builtin_add_overflow(toLastLine, lineBytes - strides.pixel + sampleBytes, &end) ||
        static_cast<std::uint64_t>(end) > request.bufferBytes) {
        return std::nullopt;
    }
    return strides;
}

/// The source line or column in the middle of a sample's share of `size`.
int nearest(int sample, int size, int samples) {
    return static_cast<int>((2 * static_cast<std::int64_t>(sample) + 1) * size /
                            (2 * static_cast<std::int64_t>(samples)));
}

/// Resamples line by line from lines at full size.
bool readReduced(GDALRasterBand& band, const PixelRequest& request, GDALDataType type,
                 const Strides& strides) {
    const auto sampleBytes = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type));
    std::vector<unsigned char> line(static_cast<std::size_t>(request.width) * sampleBytes);
    auto* target = static_cast<unsigned char*>(request.buffer);
    for (int row = 0; row < request.bufferHeight; ++row) {
        const int source = request.y + nearest(row, request.height, request.bufferHeight);
        if (band.RasterIO(GF_Read, request.x, source, request.width, 1, line.data(), request.width,
                          1, type, 0, 0, nullptr) != CE_None) {
            return false;
        }
        for (int column = 0; column < request.bufferWidth; ++column) {
            const auto from =
                static_cast<std::size_t>(nearest(column, request.width, request.bufferWidth));
            std::memcpy(target + row * strides.line + column * strides.pixel,
                        line.data() + from * sampleBytes, sampleBytes);
        }
    }
    return true;
}

}  // namespace

bool readWindow(GDALRasterBand& band, SampleFormat format, const PixelRequest& request,
                bool overviews) {
    const std::optional<GDALDataType> type = bufferType(band.GetRasterDataType(), format, request);
    if (!type || !windowInside(band, request)) {
        return false;
    }
    const std::optional<Strides> strides =
        stridesInBuffer(request, GDALGetDataTypeSizeBytes(*type));
    if (!strides) {
        return false;
    }
    const bool reduced =
        request.bufferWidth < request.width || request.bufferHeight < request.height;
    if (reduced && !overviews) {
        return readReduced(band, request, *type, *strides);
    }
    return band.RasterIO(GF_Read, request.x, request.y, request.width, request.height,
                         request.buffer, request.bufferWidth, request.bufferHeight, *type,
                         strides->pixel, strides->line, nullptr) == CE_None;
}

}  // namespace Pyxis
