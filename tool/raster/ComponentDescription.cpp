#include "tool/raster/ComponentDescription.h"

#include <cpl_string.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "tool/raster/BandMetadata.h"
#include "tool/raster/ComponentDataset.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/StringLists.h"
#include "tool/terminal/Failure.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// Items about the storage of the file or other files, which do not apply to a copy.
constexpr std::array kNotCarried = {"IMAGE_STRUCTURE", "DERIVED_SUBDATASETS", "OVERVIEWS",
                                    "COLOR_PROFILE"};

bool isCarried(const std::string& domain) {
    const bool isDocument = domain.starts_with("xml:") || domain.starts_with("json:");
    return !isDocument &&
           std::find(kNotCarried.begin(), kNotCarried.end(), domain) == kNotCarried.end();
}

MetadataItems itemsOf(char** list) {
    MetadataItems items;
    for (const std::string& item : listItems(list)) {
        char* key = nullptr;
        const char* value = CPLParseNameValue(item.c_str(), &key);
        if (key != nullptr && value != nullptr) {
            items[key] = value;
        }
        CPLFree(key);
    }
    return items;
}

void readBand(GDALRasterBand& band, ComponentDescription& facts) {
    facts.unit = band.GetUnitType();
    facts.scale = band.GetScale();
    facts.offset = band.GetOffset();
    facts.colour = band.GetColorInterpretation();
    facts.type = band.GetRasterDataType();
    band.GetBlockSize(&facts.block.width, &facts.block.height);
    facts.categories = listItems(band.GetCategoryNames());
    if (const GDALColorTable* table = band.GetColorTable()) {
        facts.colourTable.reset(table->Clone());
    }
    const CPLStringList domains(band.GetMetadataDomainList());
    for (const std::string& domain : listItems(domains.List())) {
        if (isCarried(domain)) {
            facts.domains[domain] = itemsOf(band.GetMetadata(domain.c_str()));
        }
    }
    const int flags = band.GetMaskFlags();
    facts.hasMask = (flags & GMF_PER_DATASET) != 0 && (flags & GMF_ALPHA) == 0;
}

void addAuxiliary(const AuxiliaryBand& own, ComponentDescription& facts) {
    facts.unit = own.unit.value_or(facts.unit);
    facts.scale = own.scale.value_or(facts.scale);
    facts.offset = own.offset.value_or(facts.offset);
    facts.categories = own.categories.value_or(facts.categories);
    for (const auto& [domain, items] : own.domains) {
        for (const auto& [key, value] : items) {
            if (isCarried(domain)) {
                facts.domains[domain][key] = value;
            }
        }
    }
}

}  // namespace

void addSetFacts(const Band& band, ComponentDescription& facts) {
    // A single-band file always has grey, which means nothing.
    if (const GDALColorInterp colour = colourOf(band);
        colour != GCI_Undefined || facts.colour == GCI_GrayIndex) {
        facts.colour = colour;
    }
    for (const MetadataItem& item : spectralMetadata(band)) {
        facts.domains[item.domain][item.key] = item.value;
    }
    if (hasSignedBytes(band)) {
        facts.domains["IMAGE_STRUCTURE"]["PIXELTYPE"] = "SIGNEDBYTE";
    }
}

/// A component that is open.
class ComponentReader::File {
  public:
    File(const std::string& path, const Pyxis::RasterSource& source)
        : name_(source.prefix + path), auxiliary_(readAuxiliaryFile(path)), dataset_(path, source) {
        std::error_code error;
        hasMaskFile_ = fs::exists(path + ".msk", error);
        fileItems_ = itemsOf(dataset_->GetMetadata());
    }

    const std::string& name() const { return name_; }

    ComponentDescription describe(int band) {
        ComponentDescription facts;
        facts.fileItems = fileItems_;
        facts.hasMaskFile = hasMaskFile_;
        readBand(*dataset_->GetRasterBand(band), facts);
        if (const auto found = auxiliary_.find(band); found != auxiliary_.end()) {
            addAuxiliary(found->second, facts);
        }
        return facts;
    }

    int count() const { return dataset_->GetRasterCount(); }

  private:
    std::string name_;
    std::map<int, AuxiliaryBand> auxiliary_;
    ComponentDataset dataset_;
    MetadataItems fileItems_;
    bool hasMaskFile_ = false;
};

ComponentReader::ComponentReader() = default;

ComponentReader::~ComponentReader() = default;

void ComponentReader::close() {
    file_.reset();
}

ComponentDescription ComponentReader::describe(const std::string& path,
                                               const Pyxis::RasterSource& source) {
    const GdalSession session;
    const std::string name = source.prefix + path;
    if (!file_ || file_->name() != name) {
        file_ = std::make_unique<File>(path, source);
    }
    if (source.band > file_->count()) {
        throw Failure(ExitCode::CannotRead, path, "the band cannot be opened");
    }
    return file_->describe(source.band);
}

}  // namespace kestms
