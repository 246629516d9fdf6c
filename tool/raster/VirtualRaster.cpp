#include "tool/raster/VirtualRaster.h"

#include <cpl_minixml.h>
#include <cpl_string.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <utility>

#include "tool/raster/BandMetadata.h"
#include "tool/terminal/NumberText.h"

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

void addMetadata(CPLXMLNode* element, const Band& band) {
    std::vector<MetadataItem> items = spectralMetadata(band);
    if (hasSignedBytes(band)) {
        items.push_back({"IMAGE_STRUCTURE", "PIXELTYPE", "SIGNEDBYTE"});
    }
    CPLXMLNode* domain = nullptr;
    const char* name = nullptr;
    for (const MetadataItem& item : items) {
        if (domain == nullptr || !EQUAL(name, item.domain)) {
            name = item.domain;
            domain = addElement(element, "Metadata");
            if (*name != '\0') {
                CPLAddXMLAttributeAndValue(domain, "domain", name);
            }
        }
        addText(domain, "MDI", item.value, {{"key", item.key}});
    }
}

void addSource(CPLXMLNode* element, const PlacedBand& placed, const std::string& rasterPath) {
    const Band& band = *placed.band;
    CPLXMLNode* source = addElement(element, "SimpleSource");
    addText(source, "SourceFilename",
            placed.source.prefix + relativePath(band.componentPath, rasterPath),
            {{"relativeToVRT", "1"}});
    addText(source, "SourceBand", std::to_string(placed.source.band));
    addElement(source, "SourceProperties",
               {number("RasterXSize", band.width),
                number("RasterYSize", band.height),
                {"DataType", placed.source.dataType},
                number("BlockXSize", band.block.width),
                number("BlockYSize", band.block.height)});
    addElement(source, "SrcRect",
               {number("xOff", 0), number("yOff", 0), number("xSize", band.width),
                number("ySize", band.height)});
    const PixelWindow& window = placed.window;
    addElement(source, "DstRect",
               {number("xOff", window.x), number("yOff", window.y), number("xSize", window.width),
                number("ySize", window.height)});
}

void addBand(CPLXMLNode* root, const OutputRaster& raster, std::size_t index) {
    const PlacedBand& placed = raster.bands[index];
    const Band& band = *placed.band;
    CPLXMLNode* element = addElement(
        root, "VRTRasterBand",
        {{"dataType", placed.source.dataType}, number("band", static_cast<int>(index) + 1)});
    addText(element, "Description", band.name);
    addMetadata(element, band);
    if (band.noData) {
        addText(element, "NoDataValue", numberText(*band.noData));
    }
    if (const GDALColorInterp colour = colourOf(band); colour != GCI_Undefined) {
        addText(element, "ColorInterp", GDALGetColorInterpretationName(colour));
    }
    addSource(element, placed, raster.path);
}

}  // namespace

std::string virtualRasterText(const OutputRaster& raster) {
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
        addBand(root.get(), raster, i);
    }
    const std::unique_ptr<char, decltype(&VSIFree)> text(CPLSerializeXMLTree(root.get()), VSIFree);
    return text.get();
}

}  // namespace kestms
