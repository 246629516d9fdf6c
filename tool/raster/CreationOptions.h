#pragma once

#include <cpl_string.h>
#include <gdal.h>

#include "tool/raster/ExportRequest.h"

namespace kestms {

/// Throws a Failure with ExitCode::Usage for an option that GDAL does not know, that is given
/// twice, or that would put what belongs into the file beside it.
void checkCreationOptions(const GeoTiffOptions& options);

/// For GDAL's GeoTIFF driver and samples of a type: ours, and with `withUsers` the user's in their
/// place.
CPLStringList creationOptions(const GeoTiffOptions& options, GDALDataType type, bool withUsers);

/// The same for its driver of Cloud Optimized GeoTIFF files.
CPLStringList cloudCreationOptions(const GeoTiffOptions& options, GDALDataType type);

}  // namespace kestms
