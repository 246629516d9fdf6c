#include "tool/raster/LayerStyle.h"

#include <filesystem>

#include "bands/BandWords.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/raster/XmlText.h"
#include "tool/scene/PathParts.h"

namespace kestms {
namespace {

constexpr std::string_view kEndOfMark = " -->\n";

/// Other programs leave comments out when they save a style.
std::string markFor(const std::string& path) {
    std::string name = xmlText(std::string(nameOf(path)));
    // A comment cannot hold two hyphens.
    for (std::size_t at = 0; (at = name.find("--", at)) != name.npos;) {
        name.replace(at, 2, "- -");
    }
    return "<!-- written by kestms for " + name +
           ", which replaces it with that file; without this line it stays" +
           std::string(kEndOfMark);
}

/// Counted from 1; 0 for none.
int bandOf(GDALDataset& raster, GDALColorInterp colour) {
    for (GDALRasterBand* band : raster.GetBands()) {
        if (band->GetColorInterpretation() == colour) {
            return band->GetBand();
        }
    }
    return 0;
}

/// The limits are placeholders: QGIS computes them from the visible pixels.
std::string enhancementOf(const std::string& channel) {
    return "      <" + channel +
           "ContrastEnhancement><minValue>0</minValue><maxValue>255</maxValue>"
           "<algorithm>StretchToMinimumMaximum</algorithm></" +
           channel + "ContrastEnhancement>\n";
}

}  // namespace

std::string layerStyle(GDALDataset& raster, const std::string& path) {
    std::string bands;
    std::string stretches;
    for (const auto& [channel, colour] : kDisplayChannels) {
        const std::string word(kest::wordOf(kest::kChannelWords, channel));
        const int band = bandOf(raster, colour);
        if (band == 0) {
            return {};
        }
        bands += " " + word + "Band=\"" + std::to_string(band) + "\"";
        stretches += enhancementOf(word);
    }
    return "<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>\n" + markFor(path) +
           "<qgis version=\"3.16\" styleCategories=\"Symbology\">\n"
           "  <pipe>\n"
           "    <rasterrenderer type=\"multibandcolor\" opacity=\"1\" alphaBand=\"-1\"" +
           bands +
           ">\n"
           "      <minMaxOrigin><limits>CumulativeCut</limits><extent>UpdatedCanvas</extent>"
           "<statAccuracy>Estimated</statAccuracy><cumulativeCutLower>0.02</cumulativeCutLower>"
           "<cumulativeCutUpper>0.98</cumulativeCutUpper><stdDevFactor>2</stdDevFactor>"
           "</minMaxOrigin>\n" +
           stretches +
           "    </rasterrenderer>\n"
           "  </pipe>\n"
           "</qgis>\n";
}

bool isLayerStyleOf(std::string_view style, const std::string& path) {
    return style.find(markFor(path)) != style.npos;
}

bool showTheSame(std::string_view style, std::string_view other) {
    const auto content = [](std::string_view text) {
        const std::size_t mark = text.find(kEndOfMark);
        return text.substr(mark == text.npos ? 0 : mark);
    };
    return content(style) == content(other);
}

std::string layerStylePath(const std::string& raster) {
    return std::filesystem::path(raster).replace_extension(".qml").string();
}

}  // namespace kestms
