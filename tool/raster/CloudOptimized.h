#pragma once

#include <string>

#include "tool/raster/ExportRequest.h"
#include "tool/raster/OutputFile.h"
#include "tool/terminal/Progress.h"

namespace kestms {

/// Copies a GeoTIFF to a Cloud Optimized one, the output, with overviews. Throws a Failure with
/// ExitCode::CannotWrite, and what `progress` throws.
void writeCloudOptimized(const std::string& from, const GeoTiffOptions& settings,
                         const OutputFile& output, const ProgressFunction& progress);

}  // namespace kestms
