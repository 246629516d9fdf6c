#include "gdal/ComponentBand.h"

#include <cpl_string.h>

#include <cmath>
#include <utility>

#include "tool/raster/BandMetadata.h"

namespace kestgdal {
namespace {

/// Block size of levels and masks, whose own is unknown.
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
    // What is known already; a program that only reads pixels opens no component for its facts.
    GDALRasterBand::SetDescription(band.name.c_str());
}

const kestms::ComponentDescription& ComponentBand::facts() const {
    if (!facts_) {
        facts_ = files_.describe(band_);
    }
    return *facts_;
}

void ComponentBand::addMetadata() {
    if (std::exchange(hasMetadata_, true)) {
        return;
    }
    auto domains = facts().domains;
    for (const auto& [domain, items] : facts().fileDomains) {
        domains[domain].insert(items.begin(), items.end());
    }
    kestms::MetadataItems& own = domains[""];
    if (!band_.commonName.empty()) {
        own["common_name"] = band_.commonName;
    }
    own["bucket"] = band_.bucketName;
    own["component"] = band_.componentPath;
    if (band_.georeference) {
        const auto& place = *band_.georeference;
        own["pixel_size"] =
            CPLSPrintf("%.15g %.15g", std::abs(place.pixelWidth), std::abs(place.pixelHeight));
    }
    for (const auto& [domain, items] : domains) {
        CPLStringList list;
        for (const auto& [key, value] : items) {
            list.SetNameValue(key.c_str(), value.c_str());
        }
        GDALRasterBand::SetMetadata(list.List(), domain.c_str());
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
    const GDALColorInterp known = kestms::colourOf(band_);
    return known != GCI_Undefined ? known : facts().colour;
}

GDALColorTable* ComponentBand::GetColorTable() {
    return facts().colourTable.get();
}

double ComponentBand::GetNoDataValue(int* success) {
    if (success != nullptr) {
        *success = band_.noData ? TRUE : FALSE;
    }
    constexpr double kNone = -1e10;  // GDAL's default
    return band_.noData.value_or(kNone);
}

double ComponentBand::GetOffset(int* success) {
    if (success != nullptr) {
        *success = facts().scale != 1 || facts().offset != 0 ? TRUE : FALSE;
    }
    return facts().offset;
}

double ComponentBand::GetScale(int* success) {
    if (success != nullptr) {
        *success = facts().scale != 1 || facts().offset != 0 ? TRUE : FALSE;
    }
    return facts().scale;
}

const char* ComponentBand::GetUnitType() {
    return facts().unit.c_str();
}

char** ComponentBand::GetCategoryNames() {
    if (!categories_) {
        categories_.emplace();
        for (const std::string& name : facts().categories) {
            categories_->AddString(name.c_str());
        }
    }
    return categories_->List();
}

char** ComponentBand::GetMetadataDomainList() {
    addMetadata();
    return GDALRasterBand::GetMetadataDomainList();
}

char** ComponentBand::GetMetadata(const char* domain) {
    addMetadata();
    return GDALRasterBand::GetMetadata(domain);
}

const char* ComponentBand::GetMetadataItem(const char* name, const char* domain) {
    addMetadata();
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
    if (ownMask() == nullptr) {
        return GDALRasterBand::GetMaskFlags();
    }
    // Each component has its own mask. Many programs use only a mask of all bands.
    return poDS->GetRasterCount() == 1 ? GMF_PER_DATASET : 0;
}

GDALRasterBand* ComponentBand::GetMaskBand() {
    PlacedBand* mask = ownMask();
    return mask != nullptr ? mask : GDALRasterBand::GetMaskBand();
}

}  // namespace kestgdal
