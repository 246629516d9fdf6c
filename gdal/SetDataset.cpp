#include "gdal/SetDataset.h"

#include <cpl_string.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <system_error>
#include <utility>

#include "gdal/ComponentBand.h"
#include "host/gdal/ErrorCapture.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/raster/OutputGrid.h"
#include "tool/scene/Words.h"
#include "tool/terminal/Failure.h"

namespace kestgdal {
namespace {

using kestms::Band;

/// The bands of a set by pixel size, in the order in which the sizes first occur.
std::vector<PixelSizeGroup> byPixelSize(const std::vector<Band>& bands, const std::string& unit) {
    std::vector<PixelSizeGroup> groups;
    for (const Band& band : bands) {
        const std::string label = kestms::pixelSizeLabel(band, unit);
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&label](const auto& known) { return known.label == label; });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), PixelSizeGroup{label, {}});
        }
        group->bands.push_back(&band);
    }
    return groups;
}

/// Each component that was left out as a warning of its own.
void warn(const std::string& lines) {
    const CPLStringList list(CSLTokenizeString2(lines.c_str(), "\n", 0));
    for (int i = 0; i < list.Count(); ++i) {
        CPLError(CE_Warning, CPLE_AppDefined, "%s", list[i]);
    }
}

OGRSpatialReference parsed(const std::vector<Band>& bands) {
    const Pyxis::ErrorCapture silent;
    OGRSpatialReference system;
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    // All bands of a set share one.
    if (!bands.empty() && bands.front().georeference) {
        system.importFromWkt(bands.front().georeference->coordinateSystem->c_str());
    }
    return system;
}

SetName nameOf(const char* text) {
    return parseSetName(text).value_or(SetName{text, {}});
}

}  // namespace

int SetDataset::identify(GDALOpenInfo* info) {
    const std::string_view head(reinterpret_cast<const char*>(info->pabyHeader),
                                static_cast<std::size_t>(std::max(info->nHeaderBytes, 0)));
    return parseSetName(info->pszFilename) || looksLikeComponentList(head) ? TRUE : FALSE;
}

GDALDataset* SetDataset::open(GDALOpenInfo* info) {
    if (!identify(info)) {
        return nullptr;
    }
    if (info->eAccess == GA_Update) {
        CPLError(CE_Failure, CPLE_NotSupported, "%s: sets are read only", info->pszFilename);
        return nullptr;
    }
    try {
        return std::make_unique<SetDataset>(nameOf(info->pszFilename), info->papszOpenOptions)
            .release();
    } catch (const std::exception& failure) {
        CPLError(CE_Failure, CPLE_OpenFailed, "%s", failure.what());
        return nullptr;
    }
}

SetDataset::SetDataset(SetName name, CSLConstList options) : name_(std::move(name)) {
    std::string warnings;
    set_ = SharedSession::instance().open(argumentFor(name_.path),
                                          CSLFetchNameValueDef(options, "SCENE", ""),
                                          CSLFetchNameValueDef(options, "PRODUCTS", ""), warnings);
    warn(warnings);
    eAccess = GA_ReadOnly;
    system_ = parsed(set_->bands());
    takePixelSize(name_.grid);
    arrange(options);
    grid_ = gridOf(chosen_);
    nRasterXSize = grid_.size.width;
    nRasterYSize = grid_.size.height;
    addBands();
    addDescription();
}

SetDataset::~SetDataset() {
    SetDataset::CloseDependentDatasets();
}

void SetDataset::takePixelSize(const std::string& label) {
    const std::vector<PixelSizeGroup> groups = byPixelSize(set_->bands(), kestms::unitOf(system_));
    if (label.empty()) {
        chosen_ = set_->bands();
        addParts(groups);
        return;
    }
    std::string sizes;
    for (const auto& [known, bands] : groups) {
        if (EQUAL(known.c_str(), label.c_str())) {
            for (const Band* band : bands) {
                chosen_.push_back(*band);
            }
            GDALDataset::SetMetadataItem("PIXEL_SIZES", known.c_str());
            return;
        }
        sizes += (sizes.empty() ? "" : ", ") + known;
    }
    throw kestms::Failure(kestms::ExitCode::Usage, name_.path,
                          "has no bands of pixel size " + label + ", but of " + sizes);
}

void SetDataset::arrange(CSLConstList options) {
    if (const char* names = CSLFetchNameValue(options, "BANDS")) {
        chosen_ = kestms::selectBands(std::move(chosen_), {names}).bands;
    }
    if (EQUAL(CSLFetchNameValueDef(options, "ORDER", "number"), "display")) {
        kestms::putInDisplayOrder(chosen_);
    }
}

void SetDataset::addParts(const std::vector<PixelSizeGroup>& groups) {
    CPLStringList parts;
    int number = 0;
    std::string labels;
    for (const auto& [label, bands] : groups) {
        ++number;
        labels += (labels.empty() ? "" : " ") + label;
        parts.SetNameValue(CPLSPrintf("SUBDATASET_%d_NAME", number),
                           partName(name_.path, label).c_str());
        parts.SetNameValue(
            CPLSPrintf("SUBDATASET_%d_DESC", number),
            CPLSPrintf("%s, %s (%d band%s)", bands.front()->bucketName.c_str(), label.c_str(),
                       static_cast<int>(bands.size()), bands.size() == 1 ? "" : "s"));
    }
    // A set of one pixel size has no parts, but its size has a name too.
    GDALDataset::SetMetadataItem("PIXEL_SIZES", labels.c_str());
    if (groups.size() > 1) {
        GDALDataset::SetMetadata(parts.List(), "SUBDATASETS");
    }
}

void SetDataset::addBands() {
    const Pyxis::Size block = chosen_[grid_.finest].block;
    for (std::size_t i = 0; i < chosen_.size(); ++i) {
        const Band& band = chosen_[i];
        const BandPlace& place = grid_.places[i];
        const std::shared_ptr<PixelSource> samples = samplesOf(*set_, band, files_);
        if (place.isOwnGrid) {
            levels_.add(samples);
        }
        const Sampling sampling{place, 0, grid_.size, place.isOwnGrid ? band.block : block,
                                band.noData.value_or(0.0)};
        const int number = static_cast<int>(i) + 1;
        auto raster = std::make_unique<ComponentBand>(this, number, band, files_, samples, sampling,
                                                      &levels_);
        SetBand(number, raster.release());
    }
}

void SetDataset::addDescription() {
    const kestms::SetDescription& about = set_->description();
    GDALDataset::SetMetadataItem("REFERENCE_NAME", about.referenceName.c_str());
    GDALDataset::SetMetadataItem("NAMING_SCHEME",
                                 std::string(kestms::schemeWord(about.scheme)).c_str());
    if (!about.metadataFile.empty()) {
        GDALDataset::SetMetadataItem("METADATA_FILE", about.metadataFile.c_str());
    }
    GDALDataset::SetMetadataItem("INTERLEAVE", "BAND", "IMAGE_STRUCTURE");
}

CPLErr SetDataset::GetGeoTransform(double* transform) {
    std::copy(grid_.transform.begin(), grid_.transform.end(), transform);
    return CE_None;
}

const OGRSpatialReference* SetDataset::GetSpatialRef() const {
    return system_.IsEmpty() ? nullptr : &system_;
}

char** SetDataset::GetFileList() {
    CPLStringList files;
    std::error_code error;
    if (std::filesystem::is_regular_file(name_.path, error)) {
        files.AddString(name_.path.c_str());
    }
    if (set_) {
        for (const std::string& file : SharedSession::instance().filesOf(*set_)) {
            files.AddString(file.c_str());
        }
    }
    return files.StealList();
}

int SetDataset::CloseDependentDatasets() {
    if (!reader_) {
        return FALSE;
    }
    for (int i = 0; i < nBands; ++i) {
        static_cast<ComponentBand*>(papoBands[i])->close();
    }
    files_.close();
    set_.reset();
    reader_.reset();
    return TRUE;
}

}  // namespace kestgdal
