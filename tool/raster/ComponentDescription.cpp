#include "tool/raster/ComponentDescription.h"

#include <cpl_minixml.h>
#include <cpl_string.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/BandMetadata.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/StringLists.h"
#include "tool/terminal/Failure.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// Of an auxiliary file; histograms make them long.
constexpr std::uintmax_t kLargestAuxiliaryFile = 16 << 20;

/// How the file is stored, or where other files are: not true of a copy.
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
    facts.description = band.GetDescription();
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

/// By band, from the text of an auxiliary file.
std::map<int, CPLXMLNode*> bandsIn(CPLXMLNode* document) {
    std::map<int, CPLXMLNode*> bands;
    CPLXMLNode* root = CPLGetXMLNode(document, "=PAMDataset");
    for (CPLXMLNode* node = root == nullptr ? nullptr : root->psChild; node != nullptr;
         node = node->psNext) {
        if (EQUAL(node->pszValue, "PAMRasterBand")) {
            bands.emplace(std::atoi(CPLGetXMLValue(node, "band", "0")), node);
        }
    }
    return bands;
}

/// Null when there is no auxiliary file.
CPLXMLNode* readAuxiliary(const std::string& path) {
    std::error_code error;
    const std::string name = path + ".aux.xml";
    if (!fs::is_regular_file(name, error) || fs::file_size(name, error) > kLargestAuxiliaryFile) {
        return nullptr;
    }
    std::ifstream stream(name, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    return CPLParseXMLString(text.c_str());
}

double numberAt(CPLXMLNode* band, const char* element, double otherwise) {
    const char* text = CPLGetXMLValue(band, element, nullptr);
    return text == nullptr ? otherwise : CPLAtof(text);
}

/// What the auxiliary file adds. Anything that could lead to another file is passed over.
void addAuxiliary(CPLXMLNode* band, ComponentDescription& facts) {
    facts.description = CPLGetXMLValue(band, "Description", facts.description.c_str());
    facts.unit = CPLGetXMLValue(band, "UnitType", facts.unit.c_str());
    facts.scale = numberAt(band, "Scale", facts.scale);
    facts.offset = numberAt(band, "Offset", facts.offset);
    for (const CPLXMLNode* node = band->psChild; node != nullptr; node = node->psNext) {
        if (EQUAL(node->pszValue, "CategoryNames")) {
            facts.categories.clear();
            for (const CPLXMLNode* each = node->psChild; each != nullptr; each = each->psNext) {
                facts.categories.emplace_back(CPLGetXMLValue(each, "", ""));
            }
        } else if (EQUAL(node->pszValue, "Metadata")) {
            const std::string domain = CPLGetXMLValue(node, "domain", "");
            for (const CPLXMLNode* each = node->psChild; each != nullptr && isCarried(domain);
                 each = each->psNext) {
                if (EQUAL(each->pszValue, "MDI")) {
                    facts.domains[domain][CPLGetXMLValue(each, "key", "")] =
                        CPLGetXMLValue(each, "", "");
                }
            }
        }
    }
}

}  // namespace

void addSetFacts(const Band& band, ComponentDescription& facts) {
    if (facts.description.empty() || band.isNamed) {
        facts.description = band.name;
    }
    // A file with one band always says grey, which means nothing.
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
    /// `name` is the path, or GDAL's name for a part of the file.
    File(const std::string& name, const std::string& path, const std::string& driver)
        : name_(name), auxiliary_(readAuxiliary(path)), bands_(bandsIn(auxiliary_.get())) {
        const Pyxis::ErrorCapture errors;
        // No other driver may take the file for its own.
        const char* const drivers[] = {driver.c_str(), nullptr};
        dataset_.reset(
            GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR, drivers));
        if (!dataset_) {
            throw Failure(ExitCode::CannotRead, path, errors.message());
        }
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
        if (const auto found = bands_.find(band); found != bands_.end()) {
            addAuxiliary(found->second, facts);
        }
        return facts;
    }

    int count() const { return dataset_->GetRasterCount(); }

  private:
    std::string name_;
    CPLXMLTreeCloser auxiliary_;
    std::map<int, CPLXMLNode*> bands_;
    GDALDatasetUniquePtr dataset_;
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
        file_ = std::make_unique<File>(name, path, source.driver);
    }
    if (source.band > file_->count()) {
        throw Failure(ExitCode::CannotRead, path, "the band cannot be opened");
    }
    return file_->describe(source.band);
}

}  // namespace kestms
