#pragma once

#include <gdal_priv.h>

#include <string>
#include <string_view>

namespace kestms {

/// The layer style (QML) that makes QGIS show the raster's red, green and blue bands in these
/// colours; empty for a raster without one of them. It says for which file it was written.
std::string layerStyle(GDALDataset& raster, const std::string& path);

/// Whether a style is one that `layerStyle` wrote for a file of that name, and nobody has saved
/// since.
bool isLayerStyleOf(std::string_view style, const std::string& path);

/// Whether two styles show the same, whatever files they were written for.
bool showTheSame(std::string_view style, std::string_view other);

/// Where QGIS looks for the style of a raster.
std::string layerStylePath(const std::string& raster);

}  // namespace kestms
