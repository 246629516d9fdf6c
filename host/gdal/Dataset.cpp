#include "host/gdal/Dataset.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/gdal/SampleTypes.h"

namespace Pyxis {
namespace {

std::vector<std::uint8_t> coloursOf(GDALRasterBand& band) {
    std::vector<std::uint8_t> colours;
    const GDALColorTable* table = band.GetColorTable();
    const auto byte = [](short value) {
        return static_cast<std::uint8_t>(std::clamp<short>(value, 0, 255));
    };
    for (int i = 0; table != nullptr && i < table->GetColorEntryCount(); ++i) {
        GDALColorEntry entry{};
        table->GetColorEntryAsRGB(i, &entry);
        colours.insert(colours.end(),
                       {byte(entry.c1), byte(entry.c2), byte(entry.c3), byte(entry.c4)});
    }
    return colours;
}

std::optional<std::string> textOf(const char* text) {
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

}  // namespace

std::uint64_t bytesAtOnce(const FrameFacts& facts, std::size_t bands) {
    const std::uint64_t pixels = static_cast<std::uint64_t>(facts.blockWidth) *
                                 static_cast<std::uint64_t>(facts.blockHeight);
    const std::uint64_t pixelBytes =
        (static_cast<std::uint64_t>(facts.bits) + 7) / 8 * static_cast<std::uint64_t>(bands);
    std::uint64_t bytes = 0;
    return __builtin_mul_overflow(pixels, pixelBytes, &bytes) ? UINT64_MAX : bytes;
}

int Dataset::numBands() const {
    return dataset_->GetRasterCount();
}

std::vector<FrameFacts> Dataset::frames(bool mayHaveColours) const {
    std::vector<FrameFacts> frames(static_cast<std::size_t>(std::max(numBands(), 0)));
    const bool interleaved = item("INTERLEAVE", "IMAGE_STRUCTURE") == "PIXEL";
    int number = 0;
    for (FrameFacts& facts : frames) {
        GDALRasterBand& band = *dataset_->GetRasterBand(++number);
        facts.part = part_;
        facts.band = number;
        facts.width = band.GetXSize();
        facts.height = band.GetYSize();
        band.GetBlockSize(&facts.blockWidth, &facts.blockHeight);
        facts.format = sampleFormatOf(band);
        facts.bits = GDALGetDataTypeSizeBits(band.GetRasterDataType());
        facts.label = band.GetDescription();
        facts.sampleType = GDALGetDataTypeName(band.GetRasterDataType());
        facts.bytesAtOnce = bytesAtOnce(facts, interleaved ? frames.size() : 1);
        if (mayHaveColours) {
            facts.colours = coloursOf(band);
        }
    }
    return frames;
}

bool Dataset::hasTransform() const {
    GeoTransform transform{};
    return dataset_->GetGeoTransform(transform.data()) == CE_None;
}

std::optional<std::string> Dataset::item(const char* key, const char* domain) const {
    return textOf(dataset_->GetMetadataItem(key, domain));
}

std::optional<std::string> Dataset::bandItem(int band, const char* key, const char* domain) const {
    return textOf(dataset_->GetRasterBand(band)->GetMetadataItem(key, domain));
}

int Dataset::numItems(const char* domain) const {
    return CSLCount(dataset_->GetMetadata(domain));
}

std::vector<std::string> Dataset::files() const {
    const CPLStringList list(dataset_->GetFileList());
    return {list.List(), list.List() + list.Count()};
}

bool Dataset::canReadLastPixel() const {
    constexpr double kMostBytes = 64.0 * 1024 * 1024;
    GDALRasterBand& band = *dataset_->GetRasterBand(numBands());
    int width = 1;
    int height = 1;
    band.GetBlockSize(&width, &height);
    std::array<std::byte, 2 * sizeof(double)> pixel{};
    const GDALDataType type = band.GetRasterDataType();
    // One block may hold the samples of all bands.
    return 1.0 * width * height * numBands() * GDALGetDataTypeSizeBytes(type) <= kMostBytes &&
           band.RasterIO(GF_Read, band.GetXSize() - 1, band.GetYSize() - 1, 1, 1, pixel.data(), 1,
                         1, type, 0, 0, nullptr) == CE_None;
}

std::string sampleTypeName(SampleFormat format, std::int32_t bits) {
    const std::optional<GDALDataType> type = sampleTypeOf(format, bits);
    return type ? GDALGetDataTypeName(*type) : "";
}

std::string decodedBase64(std::string text) {
    const int length = CPLBase64DecodeInPlace(reinterpret_cast<GByte*>(text.data()));
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

std::optional<std::string> gdalOption(const char* name) {
    return textOf(CPLGetConfigOption(name, nullptr));
}

}  // namespace Pyxis
