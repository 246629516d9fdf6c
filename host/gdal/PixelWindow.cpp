#include "host/gdal/PixelWindow.h"

#include <gdal_priv.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "host/gdal/SampleTypes.h"

namespace Pyxis {
namespace {

/// Samples in a band or a buffer. This version of GDAL has no type for signed bytes: it calls them
/// Byte, and would convert them as unsigned.
struct Samples {
    GDALDataType type = GDT_Byte;
    bool isSignedByte = false;

    bool operator==(const Samples&) const = default;
};

/// The samples of the buffer; nothing when there is no such type.
std::optional<Samples> samplesAsked(const Samples& own, const PixelRequest& request,
                                    SampleFormat format) {
    const bool ownAsked =
        request.sampleFormat == format && request.sampleBits == GDALGetDataTypeSizeBits(own.type);
    if (request.sampleBits == 0 || ownAsked) {
        return own;
    }
    if (request.sampleFormat == SampleFormat::SignedInteger && request.sampleBits == 8) {
        return Samples{GDT_Byte, true};
    }
    const std::optional<GDALDataType> type = sampleTypeOf(request.sampleFormat, request.sampleBits);
    return type ? std::optional(Samples{*type, false}) : std::nullopt;
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

/// The source line or column at the centre of a sample's share of `size`.
int nearest(int sample, int size, int samples) {
    return static_cast<int>((2 * static_cast<std::int64_t>(sample) + 1) * size /
                            (2 * static_cast<std::int64_t>(samples)));
}

/// The destination of pixels.
struct Target {
    unsigned char* bytes = nullptr;
    GDALDataType type = GDT_Unknown;
    Strides strides;
};

/// Resamples line by line from lines at full size.
bool readReduced(GDALRasterBand& band, const PixelRequest& request, const Target& target) {
    const auto sampleBytes = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(target.type));
    std::vector<unsigned char> line(static_cast<std::size_t>(request.width) * sampleBytes);
    for (int row = 0; row < request.bufferHeight; ++row) {
        const int source = request.y + nearest(row, request.height, request.bufferHeight);
        if (band.RasterIO(GF_Read, request.x, source, request.width, 1, line.data(), request.width,
                          1, target.type, 0, 0, nullptr) != CE_None) {
            return false;
        }
        for (int column = 0; column < request.bufferWidth; ++column) {
            const auto from =
                static_cast<std::size_t>(nearest(column, request.width, request.bufferWidth));
            std::memcpy(target.bytes + row * target.strides.line + column * target.strides.pixel,
                        line.data() + from * sampleBytes, sampleBytes);
        }
    }
    return true;
}

bool readSamples(GDALRasterBand& band, const PixelRequest& request, bool overviews,
                 const Target& target) {
    const bool reduced =
        request.bufferWidth < request.width || request.bufferHeight < request.height;
    if (reduced && !overviews) {
        return readReduced(band, request, target);
    }
    return band.RasterIO(GF_Read, request.x, request.y, request.width, request.height, target.bytes,
                         request.bufferWidth, request.bufferHeight, target.type,
                         target.strides.pixel, target.strides.line, nullptr) == CE_None;
}

/// Reads from or to signed bytes through 16-bit integers, which keep their sign.
bool readBySign(GDALRasterBand& band, const PixelRequest& request, bool overviews,
                bool fromSignedBytes, const Samples& asked, const Target& target) {
    const auto columns = static_cast<std::size_t>(request.bufferWidth);
    std::vector<GInt16> samples(columns * static_cast<std::size_t>(request.bufferHeight));
    const GSpacing pixel = sizeof(GInt16);
    const Target between{reinterpret_cast<unsigned char*>(samples.data()),
                         fromSignedBytes ? GDT_Byte : GDT_Int16,
                         {pixel, pixel * request.bufferWidth}};
    if (target.strides.pixel > INT_MAX || !readSamples(band, request, overviews, between)) {
        return false;
    }
    for (GInt16& sample : samples) {
        if (fromSignedBytes) {
            std::int8_t byte = 0;
            std::memcpy(&byte, &sample, 1);
            sample = static_cast<GInt16>(int{byte});
        } else {
            sample = std::clamp<GInt16>(sample, SCHAR_MIN, SCHAR_MAX);
        }
    }
    for (int row = 0; row < request.bufferHeight; ++row) {
        const GInt16* line = samples.data() + static_cast<std::size_t>(row) * columns;
        unsigned char* bytes = target.bytes + row * target.strides.line;
        if (!asked.isSignedByte) {
            GDALCopyWords(line, GDT_Int16, sizeof(GInt16), bytes, target.type,
                          static_cast<int>(target.strides.pixel), request.bufferWidth);
            continue;
        }
        for (int column = 0; column < request.bufferWidth; ++column) {
            bytes[column * target.strides.pixel] = static_cast<unsigned char>(line[column]);
        }
    }
    return true;
}

}  // namespace

bool readWindow(GDALRasterBand& band, SampleFormat format, const PixelRequest& request,
                bool overviews) {
    const GDALDataType type = band.GetRasterDataType();
    const Samples own{type, type == GDT_Byte && format == SampleFormat::SignedInteger};
    const std::optional<Samples> asked = samplesAsked(own, request, format);
    if (!asked || !windowInside(band, request)) {
        return false;
    }
    const std::optional<Strides> strides =
        stridesInBuffer(request, GDALGetDataTypeSizeBytes(asked->type));
    if (!strides) {
        return false;
    }
    const Target target{static_cast<unsigned char*>(request.buffer), asked->type, *strides};
    if (own != *asked && (own.isSignedByte || asked->isSignedByte)) {
        return readBySign(band, request, overviews, own.isSignedByte, *asked, target);
    }
    return readSamples(band, request, overviews, target);
}

}  // namespace Pyxis
