#include "host/tiff/TiffRaster.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>

#include "host/tiff/GdalFields.h"
#include "host/tiff/TiffTags.h"

namespace Pyxis {
namespace {

/// A field that a plain raster may have, and the whole numbers it may hold.
struct PlainField {
    std::uint64_t tag = 0;
    std::array<std::uint16_t, 4> values{};  ///< all zero: any content
};

constexpr std::uint16_t kNone = 1;  // not compressed
constexpr std::uint16_t kLzw = 5;
constexpr std::uint16_t kDeflate = 8;

constexpr PlainField kPlainFields[] = {
    {tag::kWidth},
    {tag::kHeight},
    {tag::kBitsPerSample, {8, 16, 32, 64}},
    {tag::kCompression, {kNone, kLzw, kDeflate}},
    {tag::kPhotometric, {1}},  // MinIsBlack
    {tag::kStripOffsets},
    {tag::kOrientation, {1}},  // first line on top
    {tag::kSamplesPerPixel, {1}},
    {tag::kRowsPerStrip},
    {tag::kStripLengths},
    {tag::kPlanarConfiguration, {1, 2}},  // no difference for one band
    {tag::kSoftware},
    {tag::kDateTime},
    {tag::kPredictor, {1, 2, 3}},
    {tag::kTileWidth},
    {tag::kTileHeight},
    {tag::kTileOffsets},
    {tag::kTileLengths},
    {tag::kSampleFormat, {1, 2, 3}},
    {tag::kPixelScale},
    {tag::kTiePoints},
    {tag::kKeyDirectory},
    {tag::kDoubleParameters},
    {tag::kAsciiParameters},
    {tag::kGdalMetadata},
    {tag::kGdalNoData},
};

/// Fields whose defaults differ between readers.
constexpr std::uint64_t kNeededFields[] = {tag::kBitsPerSample, tag::kCompression,
                                           tag::kPhotometric, tag::kSamplesPerPixel};

struct SampleKind {
    std::uint64_t format;  ///< TIFF's number
    std::uint64_t bits;
    SampleFormat meaning;
    double minimum;  ///< GDAL's answers for bands without statistics
    double maximum;
};
constexpr SampleKind kSampleKinds[] = {
    {1, 8, SampleFormat::UnsignedInteger, 0, 255},
    {1, 16, SampleFormat::UnsignedInteger, 0, 65535},
    {1, 32, SampleFormat::UnsignedInteger, 0, 4294967295.0},
    {2, 16, SampleFormat::SignedInteger, -32768, 32767},
    {2, 32, SampleFormat::SignedInteger, -2147483648.0, 2147483647.0},
    {3, 32, SampleFormat::FloatingPoint, -4294967295.0, 4294967295.0},
    {3, 64, SampleFormat::FloatingPoint, -4294967295.0, 4294967295.0},
};

/// A field of one whole number; 0 for any other field, or none.
std::uint64_t oneNumber(TiffFields& fields, std::uint64_t tag) {
    return fields.onlyNumber(tag).value_or(0);
}

bool isPlain(TiffFields& fields, const TiffFields::Field& field) {
    const auto* const known =
        std::find_if(std::begin(kPlainFields), std::end(kPlainFields),
                     [&field](const PlainField& plain) { return plain.tag == field.tag; });
    if (known == std::end(kPlainFields) || known->values.front() == 0) {
        return known != std::end(kPlainFields);
    }
    const std::uint64_t value = oneNumber(fields, field.tag);
    return value != 0 &&
           std::find(known->values.begin(), known->values.end(), value) != known->values.end();
}

bool isPlain(TiffFields& fields) {
    const auto& all = fields.all();
    const auto disorder =
        std::adjacent_find(all.begin(), all.end(), [](const auto& one, const auto& next) {
            return one.tag >= next.tag;  // each at most once
        });
    return disorder == all.end() &&
           std::all_of(all.begin(), all.end(),
                       [&fields](const auto& field) { return isPlain(fields, field); }) &&
           std::all_of(std::begin(kNeededFields), std::end(kNeededFields),
                       [&fields](std::uint64_t tag) { return fields.has(tag); });
}

/// Whether all blocks are listed, and none is so large that GDAL would split it.
bool hasItsBlocks(TiffFields& fields, const KnownRaster& raster, std::uint64_t offsets,
                  std::uint64_t lengths) {
    const auto number = [](std::int32_t size, std::int32_t block) {
        return (static_cast<std::uint64_t>(size) + static_cast<std::uint64_t>(block) - 1) /
               static_cast<std::uint64_t>(block);
    };
    const std::uint64_t blocks =
        number(raster.width, raster.blockWidth) * number(raster.height, raster.blockHeight);
    const std::uint64_t bytes = static_cast<std::uint64_t>(raster.blockWidth) *
                                static_cast<std::uint64_t>(raster.blockHeight) *
                                static_cast<std::uint64_t>(raster.bits / 8);
    // libtiff splits the only strip of an uncompressed file.
    constexpr std::uint64_t kMostBytesOfOnlyStrip = 8192;
    const bool mayBeCut = blocks == 1 && offsets == tag::kStripOffsets &&
                          oneNumber(fields, tag::kCompression) == kNone;
    return fields.count(offsets) == blocks && fields.count(lengths) == blocks &&
           bytes <= (mayBeCut ? kMostBytesOfOnlyStrip : INT_MAX);
}

/// A size in pixels; 0 when it is missing or GDAL would refuse it.
std::int32_t sizeIn(TiffFields& fields, std::uint64_t tag) {
    const std::uint64_t size = oneNumber(fields, tag);
    return size <= INT_MAX ? static_cast<std::int32_t>(size) : 0;
}

/// Fills in the size of blocks; false when they are unusual.
bool findBlocks(TiffFields& fields, KnownRaster& raster) {
    // GDAL reads larger strips line by line.
    constexpr std::int32_t kMostRows = 2000;
    if (fields.has(tag::kTileOffsets)) {
        const auto isUsual = [](std::int32_t size) {
            return size > 0 && size <= 32768 && size % 16 == 0;
        };
        raster.blockWidth = sizeIn(fields, tag::kTileWidth);
        raster.blockHeight = sizeIn(fields, tag::kTileHeight);
        return !fields.has(tag::kStripOffsets) && !fields.has(tag::kRowsPerStrip) &&
               isUsual(raster.blockWidth) && isUsual(raster.blockHeight) &&
               hasItsBlocks(fields, raster, tag::kTileOffsets, tag::kTileLengths);
    }
    raster.blockWidth = raster.width;
    raster.blockHeight = std::min(sizeIn(fields, tag::kRowsPerStrip), raster.height);
    return !fields.has(tag::kTileWidth) && !fields.has(tag::kTileHeight) &&
           raster.blockHeight > 0 && raster.blockHeight <= kMostRows &&
           hasItsBlocks(fields, raster, tag::kStripOffsets, tag::kStripLengths);
}

/// Fills in the no-data value; false for a text that GDAL might read differently.
bool findNoData(TiffFields& fields, KnownRaster& raster) {
    constexpr double kNoValue = -1e10;  // GDAL's answer then
    raster.range.noData = kNoValue;
    if (!fields.has(tag::kGdalNoData)) {
        return true;
    }
    std::string_view text = fields.value(tag::kGdalNoData, TiffFields::Ascii);
    if (text.ends_with('\0')) {
        text.remove_suffix(1);
    }
    raster.range.hasNoData = true;
    if (text == "nan") {
        raster.range.noData = std::numeric_limits<double>::quiet_NaN();
        return raster.format == SampleFormat::FloatingPoint;
    }
    // GDAL rounds 32-bit values; how it rounds those near the largest one is unpredictable.
    constexpr double kMostSafe = 1e38;
    const std::optional<double> value = numberIn(text);
    raster.range.noData = value.value_or(kNoValue);
    return value && std::abs(*value) < kMostSafe &&
           (raster.format != SampleFormat::FloatingPoint || raster.bits != 32 ||
            *value == static_cast<double>(static_cast<float>(*value)));
}

}  // namespace

std::optional<KnownRaster> plainRasterOf(TiffFields& fields, const TiffStatistics& statistics) {
    if (!isPlain(fields)) {
        return std::nullopt;
    }
    const std::uint64_t format =
        fields.has(tag::kSampleFormat) ? oneNumber(fields, tag::kSampleFormat) : 1;
    const std::uint64_t bits = oneNumber(fields, tag::kBitsPerSample);
    const auto* const kind = std::find_if(
        std::begin(kSampleKinds), std::end(kSampleKinds),
        [format, bits](const SampleKind& one) { return one.format == format && one.bits == bits; });
    KnownRaster raster;
    raster.width = sizeIn(fields, tag::kWidth);
    raster.height = sizeIn(fields, tag::kHeight);
    if (kind == std::end(kSampleKinds) || raster.width == 0 || raster.height == 0) {
        return std::nullopt;
    }
    raster.format = kind->meaning;
    raster.bits = static_cast<std::int32_t>(bits);
    raster.range.minimum = statistics.minimum.value_or(kind->minimum);
    raster.range.maximum = statistics.maximum.value_or(kind->maximum);
    return findBlocks(fields, raster) && findNoData(fields, raster) ? std::optional(raster)
                                                                    : std::nullopt;
}

}  // namespace Pyxis
