#pragma once

#include <string>
#include <string_view>

#include "tool/raster/OutputGrid.h"

namespace kestms {

/// The layer style (QML) that makes QGIS show the raster in the colours of its display channels;
/// empty for a raster without bands for all three.
std::string layerStyle(const OutputRaster& raster);

/// Whether a style is one that this program wrote, and nobody has saved since.
bool isOwnLayerStyle(std::string_view style);

/// Where QGIS looks for the style of a raster.
std::string layerStylePath(const std::string& raster);

}  // namespace kestms
