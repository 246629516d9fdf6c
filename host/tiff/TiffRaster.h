#pragma once

#include <optional>

#include "host/tiff/KnownFacts.h"
#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// The raster of a file whose first directory says all that GDAL would find on opening it: one band
/// of whole bytes, coded in a way that every GDAL reads, and no field whose meaning is GDAL's to
/// weigh. Nothing for any other file.
std::optional<KnownRaster> plainRasterOf(TiffFields& fields);

}  // namespace Pyxis
