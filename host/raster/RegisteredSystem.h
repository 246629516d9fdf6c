#pragma once

#include <optional>

#include "host/raster/RasterFacts.h"

namespace Pyxis {

/// A registered projected system in metres, by its EPSG code, as GDAL describes it but without
/// loading GDAL. Nothing for any other code, or when PROJ or its database is missing.
std::optional<CoordinateSystem> registeredSystem(int code);

}  // namespace Pyxis
