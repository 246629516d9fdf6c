#pragma once

#include <optional>

#include "host/tiff/GdalFields.h"
#include "host/tiff/KnownFacts.h"
#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// The raster of a plain file: one band, samples of whole bytes, a compression that every build of
/// GDAL reads, and no field that could change what GDAL finds. Nothing for any other file. The
/// content of GDAL's metadata field is for the caller to check.
std::optional<KnownRaster> plainRasterOf(TiffFields& fields, const TiffStatistics& statistics);

}  // namespace Pyxis
