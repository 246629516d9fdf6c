#pragma once

#include <optional>

#include "host/tiff/KnownFacts.h"
#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// The raster of a plain file: one band, samples of whole bytes, a compression that every build of
/// GDAL reads, and no field that could change what GDAL finds. Nothing for any other file.
std::optional<KnownRaster> plainRasterOf(TiffFields& fields);

}  // namespace Pyxis
