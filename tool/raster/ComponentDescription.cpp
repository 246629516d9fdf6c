#include "tool/raster/ComponentDescription.h"

#include <cpl_string.h>

#include <algorithm>
#include <array>

#include "host/codecs/Places.h"
#include "tool/raster/BandMetadata.h"
#include "tool/raster/ComponentDataset.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/StringLists.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// Items about the storage of the file or other files, which do not apply to a copy.
constexpr std::array kNotCarried = {"IMAGE_STRUCTURE", "DERIVED_SUBDATASETS", "OVERVIEWS",
                                    "COLOR_PROFILE"};

/// Domains of whole files about positions in them, or about how they are stored.
constexpr std::array kNotOfOutputs = {"RPC", "GEOLOCATION", "SUBDATASETS", "TRE",
                                      "CGM", "TEXT",        "ENVI"};

bool isCarriedOfFile(const std::string& domain) {
    return isCarried(domain) && !domain.starts_with("NITF") &&
           std::find(kNotOfOutputs.begin(), kNotOfOutputs.end(), domain) == kNotOfOutputs.end();
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

MetadataDomains domainsOf(GDALMajorObject& object, bool (*isWanted)(const std::string&)) {
    MetadataDomains items;
    const CPLStringList domains(object.GetMetadataDomainList());
    for (const std::string& domain : listItems(domains.List())) {
        if (isWanted(domain)) {
            items[domain] = itemsOf(object.GetMetadata(domain.c_str()));
        }
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
    facts.domains = domainsOf(band, isCarried);
    facts.hasMask = (band.GetMaskFlags() & GMF_PER_DATASET) != 0;
}

void addItems(const MetadataDomains& from, bool (*isWanted)(const std::string&),
              MetadataDomains& to) {
    for (const auto& [domain, items] : from) {
        for (const auto& [key, value] : items) {
            if (isWanted(domain)) {
                to[domain][key] = value;
            }
        }
    }
}

void addAuxiliary(const AuxiliaryBand& own, ComponentDescription& facts) {
    // The file's own go before, as in GDAL.
    if (facts.unit.empty()) {
        facts.unit = own.unit.value_or("");
    }
    if (facts.scale == 1 && facts.offset == 0) {
        facts.scale = own.scale.value_or(1);
        facts.offset = own.offset.value_or(0);
    }
    if (facts.categories.empty()) {
        facts.categories = own.categories.value_or(std::vector<std::string>());
    }
    if (own.colour) {
        facts.colour = GDALGetColorInterpretationByName(own.colour->c_str());
    }
    addItems(own.domains, isCarried, facts.domains);
}

}  // namespace

bool isCarried(const std::string& domain) {
    const bool isDocument = domain.starts_with("xml:") || domain.starts_with("json:");
    return !isDocument &&
           std::find(kNotCarried.begin(), kNotCarried.end(), domain) == kNotCarried.end();
}

std::string maskFileOf(const std::string& path) {
    for (const char* const extension : {".msk", ".MSK"}) {
        if (Pyxis::isSideFile(path + extension)) {
            return path + extension;
        }
    }
    return {};
}

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
        maskFile_ = maskFileOf(path);
        fileDomains_ = domainsOf(*dataset_, isCarriedOfFile);
        addItems(auxiliary_.domains, isCarriedOfFile, fileDomains_);
    }

    const std::string& name() const { return name_; }

    ComponentDescription describe(int band) {
        ComponentDescription facts;
        facts.fileDomains = fileDomains_;
        facts.maskFile = maskFile_;
        readBand(*dataset_->GetRasterBand(band), facts);
        if (const auto found = auxiliary_.bands.find(band); found != auxiliary_.bands.end()) {
            addAuxiliary(found->second, facts);
        }
        return facts;
    }

    int count() const { return dataset_->GetRasterCount(); }

  private:
    std::string name_;
    AuxiliaryFile auxiliary_;
    ComponentDataset dataset_;
    MetadataDomains fileDomains_;
    std::string maskFile_;
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
