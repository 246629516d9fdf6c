#pragma once

#include <string>

#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputLayout.h"
#include "tool/terminal/Progress.h"

namespace kestms {

struct GeoTiffOptions {
    std::string compression = "DEFLATE";  ///< GDAL's name; one that loses nothing
    bool cloudOptimized = false;
};

/// Writes the raster as a tiled GeoTIFF, pixels as the frames give them, window by window. Bands
/// of different sample types get the smallest one that holds all. Throws a Failure with
/// ExitCode::CannotRead or ExitCode::CannotWrite.
void writeGeoTiff(const OpenedSet& set, const OutputRaster& raster, const GeoTiffOptions& options,
                  const OutputFile& output, const ProgressFunction& progress);

/// Whether all bands can share the one no-data value that a GeoTIFF has.
bool shareNoData(const OutputRaster& raster);

}  // namespace kestms
