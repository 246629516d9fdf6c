#pragma once

#include <gdal_priv.h>

#include <string>
#include <string_view>

namespace kestms {

/// The layer style (QML) that makes QGIS show the raster's red, green and blue bands in these
/// colours; empty for a raster without one of them.
std::string layerStyle(GDALDataset& raster);

/// Whether a style is one that this program wrote, and nobody has saved since.
bool isOwnLayerStyle(std::string_view style);

/// Where QGIS looks for the style of a raster.
std::string layerStylePath(const std::string& raster);

}  // namespace kestms
