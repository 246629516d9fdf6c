#pragma once

#include <string>

#include "host/raster/RasterFacts.h"

class GDALDataset;

namespace Pyxis {

/// The coordinate system of a dataset; its text is empty when there is none.
CoordinateSystem systemOf(GDALDataset& dataset);

/// The coordinate system that a text describes; its text is empty when it describes none. Texts
/// that name a file or an address, which GDAL also accepts, are not followed.
CoordinateSystem systemIn(const std::string& text);

}  // namespace Pyxis
