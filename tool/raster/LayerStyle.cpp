#include "tool/raster/LayerStyle.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "bands/BandTypes.h"

namespace kestms {
namespace {

using kest::BandAssignment;

struct Channel {
    BandAssignment assignment;
    const char* word;
};

/// Other programs leave comments out when they save a style.
constexpr const char* kMark = "<!-- written by kestms -->";

constexpr std::array kChannels = {Channel{BandAssignment::RedChannel, "red"},
                                  Channel{BandAssignment::GreenChannel, "green"},
                                  Channel{BandAssignment::BlueChannel, "blue"}};

/// Counted from 1; 0 for none.
std::ptrdiff_t bandFor(const OutputRaster& raster, BandAssignment channel) {
    const auto found =
        std::find_if(raster.bands.begin(), raster.bands.end(),
                     [channel](const OutputBand& each) { return each.band.assignment == channel; });
    return found == raster.bands.end() ? 0 : found - raster.bands.begin() + 1;
}

}  // namespace

std::string layerStyle(const OutputRaster& raster) {
    std::string bands;
    std::string stretches;
    for (const auto& [assignment, word] : kChannels) {
        const std::ptrdiff_t band = bandFor(raster, assignment);
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
           "\n"
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
