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

CPLXMLNode* bandIn(CPLXMLNode* document, int number) {
    CPLXMLNode* root = CPLGetXMLNode(document, "=PAMDataset");
    for (CPLXMLNode* node = root == nullptr ? nullptr : root->psChild; node != nullptr;
         node = node->psNext) {
        if (EQUAL(node->pszValue, "PAMRasterBand") &&
            std::atoi(CPLGetXMLValue(node, "band", "0")) == number) {
            return node;
        }
    }
    return nullptr;
}

/// What the auxiliary file adds. Anything that could lead to another file is passed over.
void readAuxiliary(const std::string& path, int number, ComponentDescription& facts) {
    std::error_code error;
    const std::string name = path + ".aux.xml";
    if (!fs::is_regular_file(name, error) || fs::file_size(name, error) > kLargestAuxiliaryFile) {
        return;
    }
    std::ifstream stream(name, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const CPLXMLTreeCloser document(CPLParseXMLString(text.c_str()));
    CPLXMLNode* band = bandIn(document.get(), number);
    if (band == nullptr) {
        return;
    }
    facts.description = CPLGetXMLValue(band, "Description", facts.description.c_str());
    facts.unit = CPLGetXMLValue(band, "UnitType", facts.unit.c_str());
    facts.scale = CPLAtof(CPLGetXMLValue(band, "Scale", std::to_string(facts.scale).c_str()));
    facts.offset = CPLAtof(CPLGetXMLValue(band, "Offset", std::to_string(facts.offset).c_str()));
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

ComponentDescription describeComponent(const OutputBand& band) {
    const GdalSession session;
    const Pyxis::ErrorCapture errors;
    const std::string& path = band.band.componentPath;
    // The formats that components have; nothing else may take the file for its own.
    const char* const drivers[] = {"GTiff", "NITF", "FAST", nullptr};
    const GDALDatasetUniquePtr file(GDALDataset::Open(
        (band.source.prefix + path).c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR, drivers));
    if (!file || band.source.band > file->GetRasterCount()) {
        throw Failure(ExitCode::CannotRead, path, errors.message());
    }
    ComponentDescription facts;
    facts.fileItems = itemsOf(file->GetMetadata());
    readBand(*file->GetRasterBand(band.source.band), facts);
    readAuxiliary(path, band.source.band, facts);
    std::error_code error;
    facts.hasMaskFile = fs::exists(path + ".msk", error);
    return facts;
}

}  // namespace kestms
