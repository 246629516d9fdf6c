#include "tool/raster/LayerStyle.h"

#include <array>
#include <filesystem>

namespace kestms {
namespace {

struct Channel {
    GDALColorInterp colour;
    const char* word;
};

/// Other programs leave comments out when they save a style.
constexpr const char* kMark = "<!-- written by kestms";

constexpr std::array kChannels = {Channel{GCI_RedBand, "red"}, Channel{GCI_GreenBand, "green"},
                                  Channel{GCI_BlueBand, "blue"}};

/// Counted from 1; 0 for none.
int bandOf(GDALDataset& raster, GDALColorInterp colour) {
    for (GDALRasterBand* band : raster.GetBands()) {
        if (band->GetColorInterpretation() == colour) {
            return band->GetBand();
        }
    }
    return 0;
}

}  // namespace

std::string layerStyle(GDALDataset& raster) {
    std::string bands;
    std::string stretches;
    for (const auto& [colour, word] : kChannels) {
        const int band = bandOf(raster, colour);
        if (band == 0) {
            return {};
        }
        bands += std::string(" ") + word + "Band=\"" + std::to_string(band) + "\"";
        // The limits are placeholders: QGIS computes them from the visible pixels.
        stretches += std::string("      <") + word +
                     "ContrastEnhancement><minValue>0</minValue><maxValue>255</maxValue>"
                     "<algorithm>StretchToMinimumMaximum</algorithm></" +
                     word + "ContrastEnhancement>\n";
    }
    return "<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>\n" + std::string(kMark) +
           ", which replaces it with its raster; without this line it stays -->\n"
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

bool isOwnLayerStyle(std::string_view style) {
    return style.find(kMark) != std::string_view::npos;
}

std::string layerStylePath(const std::string& raster) {
    return std::filesystem::path(raster).replace_extension(".qml").string();
}

}  // namespace kestms
