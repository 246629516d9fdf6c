#pragma once

#include <string>

#include "host/raster/Gdal.h"

namespace Pyxis {

/// Reads the georeference from the text of an auxiliary file, as GDAL does, and nothing else: it
/// may name other files. Empty for another text.
AuxiliaryPlace auxiliaryPlaceIn(const std::string& text);

}  // namespace Pyxis
