#include "host/tiff/TiffDirectory.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "host/tiff/GdalFields.h"
#include "host/tiff/GeoKeys.h"
#include "host/tiff/TiffFields.h"
#include "host/tiff/TiffRaster.h"
#include "host/tiff/TiffTags.h"

namespace Pyxis {
namespace {

/// The transform of a north-up raster with a tie point at its first corner, as nearly all have.
std::optional<std::array<double, 6>> transformOf(TiffFields& fields, const GeoKeys& keys) {
    const std::vector<double> scale = fields.doubles(tag::kPixelScale, 3);
    const std::vector<double> tie = fields.doubles(tag::kTiePoints, 6);
    // GDAL multiplies tie points by scales, and gets no number where one is infinite.
    const auto isSize = [](double size) { return size > 0 && std::isfinite(size); };
    if (scale.empty() || tie.empty() || !isSize(scale[0]) || !isSize(scale[1]) || tie[0] != 0 ||
        tie[1] != 0 || fields.has(tag::kTransformation) ||
        keys.places == GeoKeys::Places::Unknown) {
        return std::nullopt;
    }
    const double toCorner = keys.places == GeoKeys::Places::Centres ? 0.5 : 0.0;
    return {
        {tie[3] - scale[0] * toCorner, scale[0], 0, tie[4] + scale[1] * toCorner, 0, -scale[1]}};
}

/// GDAL invents a colour table unless the photometric interpretation is MinIsBlack or RGB, and for
/// samples of one bit always.
bool mayHaveColours(TiffFields& fields) {
    constexpr std::uint64_t kMinIsBlack = 1;
    constexpr std::uint64_t kRgb = 2;
    const std::uint64_t model = fields.onlyNumber(tag::kPhotometric).value_or(UINT64_MAX);
    // One number a band, or one for all.
    const std::vector<std::uint64_t> bits = fields.shorts(tag::kBitsPerSample);
    const bool inventsNone = (model == kMinIsBlack || model == kRgb) && !bits.empty() &&
                             std::find(bits.begin(), bits.end(), 1) == bits.end();
    return fields.has(tag::kColourMap) || !inventsNone;
}

void findLastBlock(TiffFields& fields, KnownFacts& facts) {
    const bool tiled = fields.has(tag::kTileOffsets);
    const std::uint64_t offsets = tiled ? tag::kTileOffsets : tag::kStripOffsets;
    const std::uint64_t lengths = tiled ? tag::kTileLengths : tag::kStripLengths;
    const auto offset = fields.lastNumber(offsets);
    const auto length = fields.lastNumber(lengths);
    if (offset && length && fields.count(offsets) == fields.count(lengths)) {
        facts.lastBlock = PixelBlock{*offset, *length};
        facts.blocks = fields.count(offsets);
    }
}

}  // namespace

KnownFacts tiffFacts(const std::string& path, const FileHead& head) {
    KnownFacts facts;
    TiffFields fields(path, head);
    if (!fields.all().empty()) {
        GeoKeys keys = readGeoKeys(fields);
        // GDAL's metadata field can hold anything, descriptions included.
        const std::optional<TiffStatistics> statistics =
            fields.has(tag::kGdalMetadata)
                ? statisticsIn(fields.value(tag::kGdalMetadata, TiffFields::Ascii))
                : TiffStatistics();
        facts.mayNameOverviews = !statistics;
        facts.mayHaveDescription = facts.mayNameOverviews || fields.has(tag::kDescription);
        facts.mayHaveColours = mayHaveColours(fields);
        facts.transform = transformOf(fields, keys);
        facts.systemKey = std::move(keys.bytes);
        facts.projectedSystem = keys.projectedSystem;
        findLastBlock(fields, facts);
        if (statistics && facts.lastBlock && facts.lastBlock->isWithin(head.state.size)) {
            facts.raster = plainRasterOf(fields, *statistics);
        }
    }
    return facts;
}

}  // namespace Pyxis
