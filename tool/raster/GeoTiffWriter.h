#pragma once

#include <string>
#include <vector>

#include "tool/raster/ExportRequest.h"
#include "tool/raster/OutputFile.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/terminal/Progress.h"

namespace kestms {

/// Writes the virtual raster as a tiled GeoTIFF, window by window. Bands of different sample types
/// get the smallest one that holds all. Returns what does not arrive or arrives otherwise, a line
/// each. Throws a Failure: ExitCode::CannotRead or ExitCode::CannotWrite, ExitCode::NotDecodable
/// for bands that no one type holds, ExitCode::Usage for creation options that there are not.
std::vector<std::string> writeGeoTiff(const OutputRaster& raster, const VirtualRaster& pixels,
                                      const GeoTiffOptions& options, const OutputFile& output,
                                      const ProgressFunction& progress);

}  // namespace kestms
