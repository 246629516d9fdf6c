#pragma once

#include <string>
#include <vector>

#include "tool/raster/OutputLayout.h"
#include "tool/scene/BandFacts.h"

namespace kestms {

/// The text of a GDAL virtual raster (VRT) that takes its pixels from the components. They are
/// named by their way from the raster's directory, so that both can move together. `facts` has
/// one entry for each of the raster's bands.
std::string virtualRasterText(const OutputRaster& raster, const std::vector<BandFacts>& facts);

}  // namespace kestms
