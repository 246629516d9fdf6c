#include <array>

#include "host/codecs/GdalFormat.h"
#include "host/codecs/GdalProperties.h"
#include "host/codecs/GeoKeys.h"
#include "host/codecs/OpenedFile.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// Byte order, then the version: 42 for classic TIFF, 43 for BigTIFF.
constexpr std::array kMagics = {"II\x2a\x00"sv, "MM\x00\x2a"sv, "II\x2b\x00"sv, "MM\x00\x2b"sv};

constexpr std::string_view kBandListHead = "{\n  bandList = \n";

/// A file that was cut short keeps its directory when that stands before the pixels. The last block
/// of the last band tells, as writers put the blocks in order.
bool endsBeforePixels(OpenedFile& file, std::uint64_t fileSize) {
    GDALDataset& dataset = file.mainDataset();
    GDALRasterBand& band = *dataset.GetRasterBand(dataset.GetRasterCount());
    int blockWidth = 1;
    int blockHeight = 1;
    band.GetBlockSize(&blockWidth, &blockHeight);
    const std::string place = std::to_string((band.GetXSize() - 1) / blockWidth) + "_" +
                              std::to_string((band.GetYSize() - 1) / blockHeight);
    const char* offset = band.GetMetadataItem(("BLOCK_OFFSET_" + place).c_str(), "TIFF");
    const char* size = band.GetMetadataItem(("BLOCK_SIZE_" + place).c_str(), "TIFF");
    if (offset == nullptr || size == nullptr) {
        return false;  // a sparse file: blocks that were never written
    }
    const std::uint64_t start = std::strtoull(offset, nullptr, 10);
    const std::uint64_t length = std::strtoull(size, nullptr, 10);
    return start > fileSize || length > fileSize - start;
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
        GDALDataset& dataset = file.mainDataset();
        file.addBandsOf(dataset);
        const char* description = dataset.GetMetadataItem("TIFFTAG_IMAGEDESCRIPTION");
        file.setDescription(description != nullptr ? description : "");
        return file.numFrames() > 0 && endsBeforePixels(file, file.size()) ? "the file is cut short"
                                                                           : "";
    }
    bool takesWorldFile() const override { return true; }
    std::string systemKey(const std::string& path) const override { return geoKeys(path); }
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
    std::string reject(const OpenedFile& file) const override {
        return file.description().rfind(kBandListHead, 0) == 0
                   ? ""
                   : "the image description holds no band list";
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
