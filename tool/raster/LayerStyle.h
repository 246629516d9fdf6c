#pragma once

#include <string>

#include "tool/raster/OutputGrid.h"

namespace kestms {

/// The layer style (QML) that makes QGIS show the raster in the colours of its display channels;
/// empty for a raster without bands for all three.
std::string layerStyle(const OutputRaster& raster);

/// Where QGIS looks for the style of a raster.
std::string layerStylePath(const std::string& raster);

}  // namespace kestms
