#include "gdal/ComponentBand.h"

#include <cpl_string.h>

#include <cmath>
#include <utility>

#include "tool/raster/BandMetadata.h"

namespace kestgdal {
namespace {

/// Blocks of levels and masks, whose own are not known.
constexpr Pyxis::Size kBlock{256, 256};

}  // namespace

ComponentBand::ComponentBand(GDALDataset* dataset, int number, const kestms::Band& band,
                             ComponentFiles& files, std::shared_ptr<PixelSource> samples,
                             const Sampling& sampling, CommonLevels* levels)
    : PlacedBand(dataset, number, sampleTypeOf(band), std::move(samples), sampling,
                 band.componentPath),
      band_(band),
      files_(files),
      levels_(levels) {
    GDALRasterBand::SetDescription(band.name.c_str());
    addMetadata();
}

void ComponentBand::addMetadata() {
    for (const kestms::MetadataItem& item : kestms::spectralMetadata(band_)) {
        GDALRasterBand::SetMetadataItem(item.key, item.value.c_str(), item.domain);
    }
    if (!band_.commonName.empty()) {
        GDALRasterBand::SetMetadataItem("common_name", band_.commonName.c_str(), "");
    }
    GDALRasterBand::SetMetadataItem("bucket", band_.bucketName.c_str(), "");
    GDALRasterBand::SetMetadataItem("component", band_.componentPath.c_str(), "");
    if (band_.georeference) {
        const auto& place = *band_.georeference;
        GDALRasterBand::SetMetadataItem(
            "pixel_size",
            CPLSPrintf("%.15g %.15g", std::abs(place.pixelWidth), std::abs(place.pixelHeight)), "");
    }
    if (kestms::hasSignedBytes(band_)) {
        GDALRasterBand::SetMetadataItem("PIXELTYPE", "SIGNEDBYTE", "IMAGE_STRUCTURE");
    }
}

void ComponentBand::addComponentMetadata() {
    if (std::exchange(hasComponentMetadata_, true)) {
        return;
    }
    GDALRasterBand* own = component();
    char** items = own != nullptr ? own->GetMetadata() : nullptr;
    for (int i = 0; items != nullptr && items[i] != nullptr; ++i) {
        char* key = nullptr;
        const char* value = CPLParseNameValue(items[i], &key);
        if (key != nullptr && GDALRasterBand::GetMetadataItem(key, "") == nullptr) {
            GDALRasterBand::SetMetadataItem(key, value, "");
        }
        CPLFree(key);
    }
}

void ComponentBand::addOverviews() {
    CommonLevels* levels = std::exchange(levels_, nullptr);
    if (levels == nullptr) {
        return;
    }
    for (const Pyxis::Size& size : levels->sizes()) {
        Sampling reduced = sampling();
        reduced.place = reduced.place.onCoarserGrid({nRasterXSize, nRasterYSize}, size);
        reduced.level = static_cast<int>(overviews_.size()) + 1;
        reduced.size = size;
        reduced.block = kBlock;
        overviews_.push_back(std::make_unique<ComponentBand>(poDS, 0, band_, files_, sharedSource(),
                                                             reduced, nullptr));
    }
}

void ComponentBand::close() {
    PlacedBand::close();
    for (const auto& overview : overviews_) {
        overview->close();
    }
    if (mask_ && *mask_) {
        (*mask_)->close();
    }
}

GDALColorInterp ComponentBand::GetColorInterpretation() {
    return band_.model == Pyxis::PixelModel::Palette ? GCI_PaletteIndex : kestms::colourOf(band_);
}

GDALColorTable* ComponentBand::GetColorTable() {
    const bool hasTable = band_.model == Pyxis::PixelModel::Palette && component() != nullptr;
    return hasTable ? component()->GetColorTable() : nullptr;
}

double ComponentBand::GetNoDataValue(int* success) {
    if (success != nullptr) {
        *success = band_.noData ? TRUE : FALSE;
    }
    constexpr double kNone = -1e10;  // what GDAL itself answers then
    return band_.noData.value_or(kNone);
}

double ComponentBand::GetOffset(int* success) {
    return component() != nullptr ? component()->GetOffset(success)
                                  : GDALRasterBand::GetOffset(success);
}

double ComponentBand::GetScale(int* success) {
    return component() != nullptr ? component()->GetScale(success)
                                  : GDALRasterBand::GetScale(success);
}

const char* ComponentBand::GetUnitType() {
    return component() != nullptr ? component()->GetUnitType() : GDALRasterBand::GetUnitType();
}

char** ComponentBand::GetCategoryNames() {
    return component() != nullptr ? component()->GetCategoryNames() : nullptr;
}

char** ComponentBand::GetMetadata(const char* domain) {
    if (domain == nullptr || *domain == '\0') {
        addComponentMetadata();
    }
    return GDALRasterBand::GetMetadata(domain);
}

const char* ComponentBand::GetMetadataItem(const char* name, const char* domain) {
    if (domain == nullptr || *domain == '\0') {
        addComponentMetadata();
    }
    return GDALRasterBand::GetMetadataItem(name, domain);
}

int ComponentBand::GetOverviewCount() {
    addOverviews();
    return static_cast<int>(overviews_.size());
}

GDALRasterBand* ComponentBand::GetOverview(int index) {
    return index >= 0 && index < GetOverviewCount()
               ? overviews_[static_cast<std::size_t>(index)].get()
               : nullptr;
}

PlacedBand* ComponentBand::ownMask() {
    if (!mask_) {
        mask_.emplace();
        if (std::shared_ptr<PixelSource> mask = maskOf(band_, files_)) {
            Sampling where = sampling();
            where.outside = 0;
            *mask_ = std::make_unique<PlacedBand>(poDS, 0, GDT_Byte, mask, where, path());
        }
    }
    return mask_->get();
}

int ComponentBand::GetMaskFlags() {
    // Not GMF_PER_DATASET: each component has a mask of its own.
    return ownMask() != nullptr ? 0 : GDALRasterBand::GetMaskFlags();
}

GDALRasterBand* ComponentBand::GetMaskBand() {
    PlacedBand* mask = ownMask();
    return mask != nullptr ? mask : GDALRasterBand::GetMaskBand();
}

}  // namespace kestgdal
