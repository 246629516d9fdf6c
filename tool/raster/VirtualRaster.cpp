#include "tool/raster/VirtualRaster.h"

#include <cpl_minixml.h>
#include <cpl_string.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <utility>

#include "tool/terminal/Words.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

CPLXMLNode* addElement(CPLXMLNode* parent, const char* name, const Attributes& attributes = {},
                       const std::string* text = nullptr) {
    CPLXMLNode* element = CPLCreateXMLNode(parent, CXT_Element, name);
    for (const auto& [key, value] : attributes) {
        CPLAddXMLAttributeAndValue(element, key, value.c_str());
    }
    if (text != nullptr) {
        CPLCreateXMLNode(element, CXT_Text, text->c_str());
    }
    return element;
}

void addText(CPLXMLNode* parent, const char* name, const std::string& text,
             const Attributes& attributes = {}) {
    addElement(parent, name, attributes, &text);
}

/// The directory without links, since ".." in a path leaves the directory that a link leads to.
/// The last name stays: what lies beside a linked file is not what lies beside its target.
fs::path throughRealDirectory(const std::string& path) {
    const fs::path absolute = fs::absolute(path);
    return fs::weakly_canonical(absolute.parent_path()) / absolute.filename();
}

std::string relativePath(const std::string& file, const std::string& from) {
    // The raster itself takes the place of the file that a link leads to.
    const fs::path directory = fs::weakly_canonical(fs::absolute(from)).parent_path();
    return throughRealDirectory(file).lexically_relative(directory).string();
}

Attributes::value_type number(const char* key, int value) {
    return {key, std::to_string(value)};
}

void addMetadata(CPLXMLNode* band, const BandFacts& facts) {
    std::vector<MetadataItem> items = facts.metadata;
    if (facts.signedBytes) {
        items.push_back({"IMAGE_STRUCTURE", "PIXELTYPE", "SIGNEDBYTE"});
    }
    CPLXMLNode* domain = nullptr;
    const char* name = nullptr;
    for (const MetadataItem& item : items) {
        if (domain == nullptr || !EQUAL(name, item.domain)) {
            name = item.domain;
            domain = addElement(band, "Metadata");
            if (*name != '\0') {
                CPLAddXMLAttributeAndValue(domain, "domain", name);
            }
        }
        addText(domain, "MDI", item.value, {{"key", item.key}});
    }
}

void addSource(CPLXMLNode* band, const PlacedBand& placed, const BandFacts& facts,
               const std::string& rasterPath) {
    const BandView& view = *placed.band;
    CPLXMLNode* source = addElement(band, "SimpleSource");
    addText(source, "SourceFilename",
            facts.source.prefix + relativePath(view.componentPath, rasterPath),
            {{"relativeToVRT", "1"}});
    addText(source, "SourceBand", std::to_string(facts.source.band));
    addElement(source, "SourceProperties",
               {number("RasterXSize", view.width),
                number("RasterYSize", view.height),
                {"DataType", facts.source.dataType},
                number("BlockXSize", facts.block.width),
                number("BlockYSize", facts.block.height)});
    addElement(source, "SrcRect",
               {number("xOff", 0), number("yOff", 0), number("xSize", view.width),
                number("ySize", view.height)});
    const PixelWindow& window = placed.window;
    addElement(source, "DstRect",
               {number("xOff", window.x), number("yOff", window.y), number("xSize", window.width),
                number("ySize", window.height)});
}

void addBand(CPLXMLNode* root, const OutputRaster& raster, std::size_t index,
             const BandFacts& facts) {
    CPLXMLNode* band = addElement(
        root, "VRTRasterBand",
        {{"dataType", facts.source.dataType}, number("band", static_cast<int>(index) + 1)});
    addText(band, "Description", facts.description);
    addMetadata(band, facts);
    if (facts.noData) {
        addText(band, "NoDataValue", numberText(*facts.noData));
    }
    if (facts.colour != GCI_Undefined) {
        addText(band, "ColorInterp", GDALGetColorInterpretationName(facts.colour));
    }
    addSource(band, raster.bands[index], facts, raster.path);
}

}  // namespace

std::string virtualRasterText(const OutputRaster& raster, const std::vector<BandFacts>& facts) {
    const CPLXMLTreeCloser root(CPLCreateXMLNode(nullptr, CXT_Element, "VRTDataset"));
    CPLAddXMLAttributeAndValue(root.get(), "rasterXSize",
                               std::to_string(raster.size.width).c_str());
    CPLAddXMLAttributeAndValue(root.get(), "rasterYSize",
                               std::to_string(raster.size.height).c_str());
    if (!raster.coordinateSystem.empty()) {
        addText(root.get(), "SRS", raster.coordinateSystem);
    }
    std::string transform;
    for (const double coefficient : raster.geoTransform) {
        transform += (transform.empty() ? "" : ", ") + numberText(coefficient);
    }
    addText(root.get(), "GeoTransform", transform);
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        addBand(root.get(), raster, i, facts[i]);
    }
    const std::unique_ptr<char, decltype(&VSIFree)> text(CPLSerializeXMLTree(root.get()), VSIFree);
    return text.get();
}

}  // namespace kestms
