#include <cpl_conv.h>

#include <array>

#include "host/formats/GdalFormat.h"
#include "host/gdal/GdalProperties.h"
#include "host/gdal/OpenedFile.h"
#include "host/gdal/PixelWindow.h"
#include "host/tiff/TiffDirectory.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// Byte order, then the version: 42 for classic TIFF, 43 for BigTIFF.
constexpr std::array kMagics = {"II\x2a\x00"sv, "MM\x00\x2a"sv, "II\x2b\x00"sv, "MM\x00\x2b"sv};

constexpr std::string_view kBandListHead = "{\n  bandList = \n";

/// The last block of the last band; none where GDAL gives no place for it.
std::optional<PixelBlock> lastBlockOf(OpenedFile& file) {
    const std::optional<PixelBlock>& known = file.known().lastBlock;
    if (!file.isOpen()) {
        return known;
    }
    GDALDataset& dataset = file.mainDataset();
    GDALRasterBand& band = *dataset.GetRasterBand(dataset.GetRasterCount());
    int width = 1;
    int height = 1;
    band.GetBlockSize(&width, &height);
    const int column = (band.GetXSize() - 1) / width;
    const int row = (band.GetYSize() - 1) / height;
    const std::uint64_t blocks = (std::uint64_t(column) + 1) * (std::uint64_t(row) + 1);
    // GDAL reads an only block in parts where it is large.
    const std::uint64_t knownBlocks = file.known().blocks;
    if (dataset.GetRasterCount() == 1 && (knownBlocks == blocks || knownBlocks == 1)) {
        return known;
    }
    const std::string place = std::to_string(column) + "_" + std::to_string(row);
    const char* offset = band.GetMetadataItem(("BLOCK_OFFSET_" + place).c_str(), "TIFF");
    const char* size = band.GetMetadataItem(("BLOCK_SIZE_" + place).c_str(), "TIFF");
    if (offset == nullptr || size == nullptr) {
        return std::nullopt;
    }
    return PixelBlock{std::strtoull(offset, nullptr, 10), std::strtoull(size, nullptr, 10)};
}

/// Whether the file was cut short. It keeps its directory when that stands before the pixels, or
/// loses the end of it; the last block tells, as writers put the blocks in order. Some writers
/// state the length of a full block for the last one, so GDAL has the last word.
bool endsBeforePixels(OpenedFile& file) {
    const std::optional<PixelBlock> last = lastBlockOf(file);
    const bool isSparse = last && last->offset == 0 && last->length == 0;
    const bool isThere = last && last->length != 0 && last->isWithin(file.size());
    return file.isOpen() && !isSparse && !isThere && !canReadLastPixel(file.mainDataset());
}

/// Whether GDAL takes georeferences from the file itself, as it does unless told otherwise.
bool usesOwnGeoreference() {
    static const bool uses = CPLGetConfigOption("GDAL_GEOREF_SOURCES", nullptr) == nullptr;
    return uses;
}

class TiffFormat : public GdalFormat {
  public:
    const FormatTexts& texts() const override {
        static const FormatTexts kTexts = {
            "TIFF",
            "Tagged Image File Format, with GeoTIFF georeference",
            {"tif", "tiff"},
            {FormatFeature::Compression, FormatFeature::ReducedResolutions, FormatFeature::Palette,
             FormatFeature::Tiling},
            "Image Description",
            9};
        return kTexts;
    }
    const char* driver() const override { return "GTiff"; }
    bool matches(std::string_view head) const override {
        return std::find(kMagics.begin(), kMagics.end(), head.substr(0, 4)) != kMagics.end();
    }
    std::string load(OpenedFile& file) const override {
        if (file.isOpen()) {
            GDALDataset& dataset = file.mainDataset();
            file.addBandsOf(dataset);
            const char* description = file.known().mayHaveDescription
                                          ? dataset.GetMetadataItem("TIFFTAG_IMAGEDESCRIPTION")
                                          : nullptr;
            file.setDescription(description != nullptr ? description : "");
        } else {
            file.addKnownRaster();
        }
        return file.numFrames() > 0 && endsBeforePixels(file) ? "the file is cut short" : "";
    }
    bool takesWorldFile() const override { return true; }
    KnownFacts knownFacts(const std::string& path, const FileHead& head) const override {
        KnownFacts facts = tiffFacts(path, head);
        if (!usesOwnGeoreference()) {
            facts.transform.reset();
        }
        return facts;
    }
    void describe(OpenedFile& file, int frame, GdalPropertySet& properties) const override {
        if (const auto facts = file.geoFacts(frame)) {
            const GdalGeoTiffCorrelation correlation(facts);
            properties.append(&correlation);
        }
        const std::string& text = file.description();
        if (!text.empty()) {
            const GdalStringProperty description(texts().ownProperty,
                                                 "Description of the image in its file", text);
            properties.append(&description);
        }
    }
};

class QuickBirdFormat final : public TiffFormat {
  public:
    const FormatTexts& texts() const override {
        static const FormatTexts kTexts = [this] {
            FormatTexts texts = TiffFormat::texts();
            texts.name = "QuickBird TIFF";
            texts.description = "TIFF whose image description holds a band list";
            return texts;
        }();
        return kTexts;
    }
    std::string_view reject(const OpenedFile& file) const override {
        return file.description().starts_with(kBandListHead)
                   ? ""sv
                   : "the image description holds no band list"sv;
    }
};

}  // namespace

const GdalFormat& tiffFormat() {
    static const TiffFormat format;
    return format;
}

const GdalFormat& quickBirdFormat() {
    static const QuickBirdFormat format;
    return format;
}

}  // namespace Pyxis
