#pragma once

#include <string>

#include "tool/raster/OutputLayout.h"

namespace kestms {

/// The text of a GDAL virtual raster (VRT) that takes its pixels from the components. They are
/// named by their way from the raster's directory, so that both can move together.
std::string virtualRasterText(const OutputRaster& raster);

}  // namespace kestms
