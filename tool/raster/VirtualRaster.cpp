#include "tool/raster/VirtualRaster.h"

#include <cpl_minixml.h>
#include <gdal_frmts.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>

#include "host/codecs/Places.h"
#include "tool/raster/BandMetadata.h"
#include "tool/raster/ComponentDescription.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/RelativePath.h"
#include "tool/raster/XmlText.h"
#include "tool/scene/Components.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/NumberText.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

std::string rectangleAttributes(const PixelRectangle& rectangle) {
    return "xOff=\"" + numberText(rectangle.x) + "\" yOff=\"" + numberText(rectangle.y) +
           "\" xSize=\"" + numberText(rectangle.width) + "\" ySize=\"" +
           numberText(rectangle.height) + "\"";
}

/// GDAL does not mix indexes of a colour table.
std::string methodFor(const ComponentDescription& facts, const VirtualRasterOptions& options) {
    const bool mixes = options.resampling == "bilinear" || options.resampling == "cubic";
    return mixes && facts.colourTable ? "nearest" : options.resampling;
}

/// Whether the band's no-data pixels get another value.
bool isRemapped(const Band& band, const VirtualRasterOptions& options) {
    return options.noData && band.noData && band.noData != options.noData;
}

/// GDAL drops blanks before a text.
std::string relativeName(const std::string& file, const std::string& raster) {
    const std::string path = relativePath(file, raster);
    return path.find_first_of(" \t\r\n") == 0 ? "./" + path : path;
}

/// The element that places a component's band, or its mask, in the raster; `name` is that of the
/// component.
std::string sourceText(const OutputBand& band, const ComponentDescription& facts,
                       const VirtualRasterOptions& options, bool ofMask, const std::string& name,
                       bool isRelative) {
    const bool remapped = !ofMask && isRemapped(band.band, options);
    const std::string method = band.isOnGrid() ? "nearest" : methodFor(facts, options);
    // GDAL turns simple sources that average into ones that go by whole pixels.
    const bool averaged = method == "average";
    // An average is of the pixels with data, so there is one wherever a part has data.
    const bool resampled = averaged || (method != "nearest" && !ofMask);
    const std::string element = remapped || averaged ? "ComplexSource" : "SimpleSource";
    const Pyxis::Size size{band.band.width, band.band.height};
    return "<" + element + (resampled ? " resampling=\"" + method + "\"" : std::string()) +
           "><SourceFilename relativeToVRT=\"" + (isRelative ? "1" : "0") + "\">" +
           escapedMarkup(name) + "</SourceFilename><SourceBand>" + (ofMask ? "mask," : "") +
           std::to_string(band.source.band) + "</SourceBand><SourceProperties RasterXSize=\"" +
           std::to_string(size.width) + "\" RasterYSize=\"" + std::to_string(size.height) +
           "\" DataType=\"" + (ofMask ? "Byte" : band.source.dataType) + "\" BlockXSize=\"" +
           std::to_string(facts.block.width) + "\" BlockYSize=\"" +
           std::to_string(facts.block.height) + "\"/><SrcRect " +
           rectangleAttributes(
               {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)}) +
           "/><DstRect " + rectangleAttributes(band.rectangle) + "/>" +
           (remapped ? "<NODATA>" + numberText(*band.band.noData) + "</NODATA>" : std::string()) +
           "</" + element + ">";
}

void setMetadata(GDALMajorObject& object, const std::string& domain, const MetadataItems& items) {
    MetadataItems writable;
    for (const auto& [key, value] : items) {
        writable[xmlText(key)] = xmlText(value);
    }
    CPLStringList list;
    for (const auto& [key, value] : writable) {
        list.AddNameValue(key.c_str(), value.c_str());
    }
    object.SetMetadata(list.List(), domain.c_str());
}

bool covers(const PixelRectangle& rectangle, const Pyxis::Size& size) {
    return rectangle.x <= 0 && rectangle.y <= 0 && rectangle.x + rectangle.width >= size.width &&
           rectangle.y + rectangle.height >= size.height;
}

/// Statistics are those of the band's own pixels that have data.
void dropStatistics(MetadataItems& items) {
    std::erase_if(items, [](const auto& item) { return isStatistic(item.first); });
}

void describe(GDALRasterBand& target, const ComponentDescription& facts) {
    target.SetColorInterpretation(facts.colour);
    if (facts.colourTable) {
        target.SetColorTable(facts.colourTable.get());
    }
    if (facts.scale != 1 || facts.offset != 0) {
        target.SetScale(facts.scale);
        target.SetOffset(facts.offset);
    }
    if (!facts.unit.empty()) {
        target.SetUnitType(xmlText(facts.unit).c_str());
    }
    if (!facts.categories.empty()) {
        CPLStringList names;
        for (const std::string& name : facts.categories) {
            names.AddString(xmlText(name).c_str());
        }
        target.SetCategoryNames(names.List());
    }
    for (const auto& [domain, items] : facts.domains) {
        setMetadata(target, domain, items);
    }
}

/// Items of whole files: those that all files share go to the raster, the rest to the bands.
MetadataDomains shareItems(std::vector<ComponentDescription>& all) {
    MetadataDomains shared = all.front().fileDomains;
    for (auto& [domain, items] : shared) {
        for (ComponentDescription& facts : all) {
            const MetadataItems& own = facts.fileDomains[domain];
            std::erase_if(items, [&own](const auto& item) {
                const auto same = own.find(item.first);
                return same == own.end() || same->second != item.second;
            });
        }
    }
    // It describes the bands of a component, not of the raster.
    shared[""].erase("TIFFTAG_IMAGEDESCRIPTION");
    for (ComponentDescription& facts : all) {
        for (const auto& [domain, items] : facts.fileDomains) {
            for (const auto& [key, value] : items) {
                if (!shared[domain].contains(key) && key != "AREA_OR_POINT") {
                    facts.domains[domain].emplace(key, value);
                }
            }
        }
    }
    return shared;
}

void addSource(GDALRasterBand& band, const std::string& source) {
    band.SetMetadataItem("source_0", source.c_str(), "new_vrt_sources");
}

void replaceSource(CPLXMLNode* band, const std::string& source) {
    for (const char* const element : {"SimpleSource", "ComplexSource"}) {
        if (CPLXMLNode* old = band == nullptr ? nullptr : CPLGetXMLNode(band, element)) {
            CPLRemoveXMLChild(band, old);
            CPLDestroyXMLNode(old);
            CPLAddXMLChild(band, CPLParseXMLString(source.c_str()));
        }
    }
}

/// GDAL writes 16 digits: the largest number, rounded up, would be infinite.
void replaceNoData(CPLXMLNode* band, double value) {
    if (CPLGetXMLNode(band, "NoDataValue") != nullptr) {
        CPLSetXMLValue(band, "NoDataValue", numberText(value).c_str());
    }
}

bool canHold(const Band& band, GDALDataType type, double value) {
    if (hasSignedBytes(band)) {  // of which the type says nothing
        using Limits = std::numeric_limits<std::int8_t>;
        return value >= Limits::min() && value <= Limits::max() && value == std::trunc(value);
    }
    int clamped = FALSE;
    int rounded = FALSE;
    GDALAdjustValueToDataType(type, value, &clamped, &rounded);
    return clamped == FALSE && rounded == FALSE;
}

/// GDAL keeps the files of 100 sources open, however few the process may have.
void limitOpenSources() {
    constexpr const char* kOption = "GDAL_MAX_DATASET_POOL_SIZE";
    constexpr rlim_t kMost = 100;
    constexpr rlim_t kLeast = 2;
    rlimit descriptors{};
    if (CPLGetConfigOption(kOption, nullptr) == nullptr &&
        getrlimit(RLIMIT_NOFILE, &descriptors) == 0) {
        const rlim_t count = std::clamp(descriptors.rlim_cur / 4, kLeast, kMost);
        CPLSetConfigOption(kOption, std::to_string(count).c_str());
    }
}

}  // namespace

VirtualRaster::VirtualRaster(const OutputRaster& raster, const VirtualRasterOptions& options)
    : raster_(raster) {
    GDALRegister_VRT();
    limitOpenSources();
    const GdalSession session;
    std::vector<ComponentDescription> all;
    ComponentReader components;
    for (const OutputBand& band : raster.bands) {
        throwIfInterrupted();
        all.push_back(components.describe(band));
    }
    dataset_.reset(GetGDALDriverManager()->GetDriverByName("VRT")->Create(
        "", raster.size.width, raster.size.height, 0, GDT_Byte, nullptr));
    auto transform = raster.geoTransform;
    dataset_->SetGeoTransform(transform.data());
    if (!raster.coordinateSystem.empty()) {
        dataset_->SetProjection(xmlText(raster.coordinateSystem).c_str());
    }
    for (const auto& [domain, items] : shareItems(all)) {
        setMetadata(*dataset_, domain, items);
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        addBand(raster.bands[i], all[i], options);
    }
}

std::string VirtualRaster::nameOf(const OutputBand& band) {
    const std::string& path = band.band.componentPath;
    auto& name = names_[band.source.prefix + path];
    if (!name) {
        name = std::make_unique<SourceName>(path, band.source);
    }
    return name->text();
}

void VirtualRaster::addBand(OutputBand band, ComponentDescription& facts,
                            const VirtualRasterOptions& options) {
    const std::string path = band.band.componentPath;
    if (band.band.noData && !canHold(band.band, facts.type, *band.band.noData)) {
        leftOut_.push_back(path + ": its no-data value " + numberText(*band.band.noData) +
                           " is left out, since its samples cannot have it");
        band.band.noData.reset();
    }
    if (options.noData && !canHold(band.band, facts.type, *options.noData)) {
        throw Failure(ExitCode::Usage, path,
                      "its samples cannot have the value " + numberText(*options.noData));
    }
    const std::optional<double> noData = options.noData ? options.noData : band.band.noData;
    const Pyxis::Size& size = raster_.size;
    dataset_->AddBand(facts.type, nullptr);
    GDALRasterBand& target = *dataset_->GetRasterBand(dataset_->GetRasterCount());
    const bool isWhole = band.isOnGrid() &&
                         covers({-band.rectangle.x, -band.rectangle.y,
                                 static_cast<double>(size.width), static_cast<double>(size.height)},
                                {band.band.width, band.band.height});
    if (noData != band.band.noData || !isWhole) {
        dropStatistics(facts.domains[""]);
    }
    isUnchanged_ =
        isUnchanged_ && isWhole && covers(band.rectangle, size) && !isRemapped(band.band, options);
    addSetFacts(band.band, facts);
    target.SetDescription(xmlText(band.band.name).c_str());
    describe(target, facts);
    if (noData) {
        target.SetNoDataValue(*noData);
    }
    // GDAL's names for files in archives or on the network are never relative.
    const bool isPlain = Pyxis::kindOf(path) == Pyxis::PathKind::Plain;
    const bool isRelative = isPlain && options.paths == VirtualRasterOptions::Paths::Relative;
    const std::string name = band.source.prefix + (isRelative ? relativeName(path, raster_.path)
                                                   : isPlain  ? fs::absolute(path).string()
                                                              : absoluteName(path));
    addSource(target, sourceText(band, facts, options, false, nameOf(band), false));
    sources_.push_back(sourceText(band, facts, options, false, name, isRelative));
    maskSources_.emplace_back();
    if (facts.hasMask || (!noData && !covers(band.rectangle, size))) {
        target.CreateMaskBand(0);
        addSource(*target.GetMaskBand(),
                  sourceText(band, facts, options, true, nameOf(band), false));
        maskSources_.back() = sourceText(band, facts, options, true, name, isRelative);
    }
    if (!band.isOnGrid() && methodFor(facts, options) != options.resampling) {
        leftOut_.push_back(path + ": resampled (nearest), since its colours cannot be mixed");
    }
    const std::string note = facts.maskFile + ": masks of their own files are not carried";
    if (!facts.maskFile.empty() &&
        std::find(leftOut_.begin(), leftOut_.end(), note) == leftOut_.end()) {
        leftOut_.push_back(note);  // once for all bands of a file
    }
}

std::string VirtualRaster::text() const {
    for (const OutputBand& band : raster_.bands) {
        const std::string name = relativePath(band.band.componentPath, raster_.path);
        if (xmlText(name) != name) {
            throw Failure(ExitCode::CannotWrite, band.band.componentPath,
                          "a virtual raster cannot hold this name");
        }
    }
    const CPLXMLTreeCloser document(CPLParseXMLString(dataset_->GetMetadata("xml:VRT")[0]));
    std::size_t index = 0;
    for (CPLXMLNode* node = CPLGetXMLNode(document.get(), "=VRTDataset")->psChild; node != nullptr;
         node = node->psNext) {
        if (EQUAL(node->pszValue, "VRTRasterBand")) {
            replaceNoData(node, dataset_->GetBands()[index]->GetNoDataValue());
            replaceSource(node, sources_[index]);
            replaceSource(CPLGetXMLNode(node, "MaskBand.VRTRasterBand"), maskSources_[index]);
            ++index;
        }
    }
    const std::unique_ptr<char, decltype(&VSIFree)> text(CPLSerializeXMLTree(document.get()),
                                                         VSIFree);
    return text.get();
}

}  // namespace kestms
