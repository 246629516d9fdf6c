#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>

#include "host/formats/Formats.h"
#include "host/formats/FrameProperties.h"
#include "host/formats/GeoCorrelation.h"
#include "host/tiff/TiffDirectory.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// Byte order, then the version: 42 for classic TIFF, 43 for BigTIFF.
constexpr std::array kMagics = {"II\x2a\x00"sv, "MM\x00\x2a"sv, "II\x2b\x00"sv, "MM\x00\x2b"sv};

constexpr std::string_view kBandListHead = "{\n  bandList = \n";

bool recognise(std::string_view head, const std::string& /*path*/) {
    return std::find(kMagics.begin(), kMagics.end(), head.substr(0, 4)) != kMagics.end();
}

/// The last block of the last band; none if GDAL has no offset for it.
std::optional<PixelBlock> lastBlockOf(const Dataset& dataset, const FrameFacts& last,
                                      const KnownFacts& known) {
    const int column = (last.width - 1) / last.blockWidth;
    const int row = (last.height - 1) / last.blockHeight;
    const std::uint64_t blocks = (std::uint64_t(column) + 1) * (std::uint64_t(row) + 1);
    // GDAL splits a large single block.
    if (dataset.numBands() == 1 && (known.blocks == blocks || known.blocks == 1)) {
        return known.lastBlock;
    }
    const std::string place = std::to_string(column) + "_" + std::to_string(row);
    const auto offset = dataset.bandItem(last.band, ("BLOCK_OFFSET_" + place).c_str(), "TIFF");
    const auto size = dataset.bandItem(last.band, ("BLOCK_SIZE_" + place).c_str(), "TIFF");
    if (!offset || !size) {
        return std::nullopt;
    }
    return PixelBlock{std::strtoull(offset->c_str(), nullptr, 10),
                      std::strtoull(size->c_str(), nullptr, 10)};
}

/// Whether the file was truncated. Its directory may be intact, before the pixels, or cut; the last
/// block shows it, as writers store the blocks in order. Some writers give the last block the
/// length of a full one, so GDAL decides.
bool endsBeforePixels(const Dataset& dataset, const FrameFacts& lastFrame, const KnownFacts& known,
                      std::uint64_t fileSize) {
    const std::optional<PixelBlock> last = lastBlockOf(dataset, lastFrame, known);
    const bool isSparse = last && last->offset == 0 && last->length == 0;
    const bool isThere = last && last->length != 0 && last->isWithin(fileSize);
    return !isSparse && !isThere && !dataset.canReadLastPixel();
}

/// Whether GDAL reads georeferences from the file itself, and as GeoTIFF defines them, which is its
/// default.
bool usesOwnGeoreference() {
    static const bool uses =
        !gdalOption("GDAL_GEOREF_SOURCES") && !gdalOption("GTIFF_POINT_GEO_IGNORE");
    return uses;
}

/// GDAL's name for samples of plain rasters.
std::string sampleTypeName(SampleFormat format, std::int32_t bits) {
    if (format == SampleFormat::UnsignedInteger) {
        return bits == 8 ? "Byte" : "UInt" + std::to_string(bits);
    }
    return (format == SampleFormat::FloatingPoint ? "Float" : "Int") + std::to_string(bits);
}

FrameFacts frameOf(const KnownRaster& raster) {
    FrameFacts facts;
    facts.band = 1;
    facts.width = raster.width;
    facts.height = raster.height;
    facts.blockWidth = raster.blockWidth;
    facts.blockHeight = raster.blockHeight;
    facts.format = raster.format;
    facts.bits = raster.bits;
    facts.range = raster.range;
    facts.bytesAtOnce = bytesAtOnce(facts);
    facts.sampleType = sampleTypeName(raster.format, raster.bits);
    return facts;
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    KnownFacts known = tiffFacts(file.absolutePath, file.head);
    RasterFacts facts;
    if (usesOwnGeoreference()) {
        facts.place.transform = known.transform;
    }
    facts.place.systemKey = std::move(known.systemKey);
    facts.place.projectedSystem = known.projectedSystem;
    placeByFirstSideFile(facts, file);
    if (!known.mayNameOverviews) {
        handle.setNamesNoOverviews();
    }
    if (known.raster && facts.place.transform) {
        facts.frames.push_back(frameOf(*known.raster));  // GDAL waits until pixels are asked for
        return facts;
    }
    const Expected<const Dataset*> opened = handle.open();
    if (!opened) {
        return opened.refusal();
    }
    const Dataset& dataset = **opened;
    facts.frames = dataset.frames(known.mayHaveColours);
    if (known.mayHaveDescription) {
        facts.description = dataset.item("TIFFTAG_IMAGEDESCRIPTION").value_or("");
    }
    if (!facts.frames.empty() &&
        endsBeforePixels(dataset, facts.frames.back(), known, file.head.state.size)) {
        return damaged("the file is cut short");
    }
    placeBySideFiles(facts, file, dataset, handle);
    return facts;
}

constexpr const char* kDescription = "Image Description";

void describe(RasterFile& file, int frame, FrameProperties& properties) {
    if (const auto place = file.place(frame)) {
        const CornerCorrelation correlation(place);
        properties.append(&correlation);
    }
    const std::string& text = file.facts().description;
    if (!text.empty()) {
        const TextProperty description(kDescription, "Description of the image in its file", text);
        properties.append(&description);
    }
}

std::string_view holdsNoBandList(const RasterFacts& facts) {
    return facts.description.starts_with(kBandListHead)
               ? ""sv
               : "the image description holds no band list"sv;
}

Format makeTiffFormat() {
    return {
        .name = "TIFF",
        .description = "Tagged Image File Format, with GeoTIFF georeference",
        .extensions = {"tif", "tiff"},
        .features = {FormatFeature::Compression, FormatFeature::ReducedResolutions,
                     FormatFeature::Palette, FormatFeature::Tiling},
        .interface = Format::Interface::Tiff,
        .ownProperty = kDescription,
        .ownPropertyNumber = 9,
        .driver = "GTiff",
        .view = View::Directory,
        .auxiliary = AuxiliaryRank::First,
        .recognise = recognise,
        .load = load,
        .describe = describe,
    };
}

}  // namespace

const Format& tiffFormat() {
    static const Format format = makeTiffFormat();
    return format;
}

const Format& quickBirdFormat() {
    static const Format format = [] {
        Format quickBird = makeTiffFormat();
        quickBird.name = "QuickBird TIFF";
        quickBird.description = "TIFF whose image description holds a band list";
        quickBird.interface = Format::Interface::QuickBird;
        quickBird.reject = holdsNoBandList;
        return quickBird;
    }();
    return format;
}

}  // namespace Pyxis
