#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputFormat.h"
#include "tool/raster/OutputGrid.h"
#include "tool/raster/VirtualRaster.h"
#include "tool/scene/Context.h"
#include "tool/terminal/Progress.h"

namespace kestms {

/// Which bands of a set become a raster, how and where.
struct ExportRequest {
    std::vector<std::string> inputs;
    std::string output;
    bool overwrite = false;
    std::vector<std::string> bands;  ///< words of `selectBands`
    std::vector<std::string> names;  ///< words of `renameBands`
    bool displayOrder = false;
    GridOptions grid;
    std::string resampling = "nearest";
    std::optional<double> noData;
    bool withStyle = true;
};

/// Writes one raster into its file and returns what did not arrive, a line each.
using RasterWriter =
    std::function<std::vector<std::string>(const OutputRaster& raster, const VirtualRaster& pixels,
                                           OutputFile& file, const ProgressFunction& progress)>;

/// The set's bands, chosen, named and ordered as requested.
std::vector<Band> bandsOf(const OpenedSet& set, const ExportRequest& request);

/// Writes the rasters of a set and their styles, all of them or none, and prints their names. Says
/// in one line each what is resampled, moved or left out.
void exportRasters(Context& context, const ExportRequest& request, OutputFormat format,
                   const RasterWriter& write);

/// Prints one virtual raster with absolute paths on standard output.
void printVirtualRaster(Context& context, const ExportRequest& request);

}  // namespace kestms
