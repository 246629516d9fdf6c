#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tool/raster/ExportRequest.h"
#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputFormat.h"
#include "tool/raster/OutputGrid.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/scene/Context.h"
#include "tool/terminal/Progress.h"

namespace kestms {

/// Writes one raster into its file and returns what did not arrive, a line each.
using RasterWriter =
    std::function<std::vector<std::string>(const OutputRaster& raster, const VirtualRaster& pixels,
                                           OutputFile& file, const ProgressFunction& progress)>;

/// The set's bands, chosen, named and ordered as requested. Says which words repeat others.
std::vector<Band> bandsOf(const Context& context, const OpenedSet& set,
                          const ExportRequest& request);

/// Writes the rasters of a set and their styles, all of them or none, and prints their names. Says
/// in one line each what is resampled, moved or left out.
void exportRasters(Context& context, const ExportRequest& request, OutputFormat format,
                   const RasterWriter& write);

/// Prints one virtual raster with absolute paths on standard output.
void printVirtualRaster(Context& context, const ExportRequest& request);

}  // namespace kestms
