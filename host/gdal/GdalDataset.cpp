#include "host/gdal/GdalDataset.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/gdal/ErrorCapture.h"
#include "host/gdal/PixelWindow.h"
#include "host/gdal/SampleTypes.h"
#include "host/gdal/SystemText.h"

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

GdalDataset::~GdalDataset() {
    const ErrorCapture silent;
    dataset_.reset();
}

int GdalDataset::numBands() const {
    return dataset_->GetRasterCount();
}

std::vector<FrameFacts> GdalDataset::frames(bool mayHaveColours) const {
    const ErrorCapture silent;
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

std::optional<GeoTransform> GdalDataset::transform() const {
    const ErrorCapture silent;
    GeoTransform transform{};
    return dataset_->GetGeoTransform(transform.data()) == CE_None ? std::optional(transform)
                                                                  : std::nullopt;
}

CoordinateSystem GdalDataset::coordinateSystem() const {
    const ErrorCapture silent;
    return systemOf(*dataset_);
}

std::optional<std::string> GdalDataset::item(const char* key, const char* domain) const {
    const ErrorCapture silent;
    return textOf(dataset_->GetMetadataItem(key, domain));
}

std::optional<std::string> GdalDataset::bandItem(int band, const char* key,
                                                 const char* domain) const {
    const ErrorCapture silent;
    return textOf(dataset_->GetRasterBand(band)->GetMetadataItem(key, domain));
}

std::string GdalDataset::bytesOfItem(const char* key, const char* domain) const {
    std::string text = item(key, domain).value_or("");
    const std::size_t blank = text.find(' ');
    text = blank == std::string::npos ? std::string() : text.substr(blank + 1);
    const int length = CPLBase64DecodeInPlace(reinterpret_cast<GByte*>(text.data()));
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

int GdalDataset::numItems(const char* domain) const {
    const ErrorCapture silent;
    return CSLCount(dataset_->GetMetadata(domain));
}

std::vector<std::string> GdalDataset::files() const {
    const ErrorCapture silent;
    const CPLStringList list(dataset_->GetFileList());
    return {list.List(), list.List() + list.Count()};
}

bool GdalDataset::canReadLastPixel() const {
    const ErrorCapture silent;
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

int GdalDataset::numOverviews(int band) const {
    const ErrorCapture silent;
    return dataset_->GetRasterBand(band)->GetOverviewCount();
}

GDALRasterBand* GdalDataset::level(int band, int number) const {
    GDALRasterBand* full = dataset_->GetRasterBand(band);
    if (number == 0) {
        return full;
    }
    return number > 0 && number <= full->GetOverviewCount() ? full->GetOverview(number - 1)
                                                            : nullptr;
}

bool GdalDataset::hasLevel(int band, int number) const {
    const ErrorCapture silent;
    return level(band, number) != nullptr;
}

ChannelRange GdalDataset::range(int band) const {
    const ErrorCapture silent;
    GDALRasterBand& asked = *dataset_->GetRasterBand(band);
    int hasNoData = FALSE;
    const double noData = asked.GetNoDataValue(&hasNoData);
    return {asked.GetMinimum(nullptr), asked.GetMaximum(nullptr), noData, hasNoData != FALSE};
}

bool GdalDataset::read(int band, int number, SampleFormat format, const PixelRequest& request,
                       bool overviews) const {
    const ErrorCapture silent;
    GDALRasterBand* from = level(band, number);
    return from != nullptr && readWindow(*from, format, request, overviews);
}

}  // namespace Pyxis
