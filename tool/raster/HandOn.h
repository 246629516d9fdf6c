#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputLayout.h"
#include "tool/terminal/Progress.h"

namespace kestms {

/// What to hand on, and where to.
struct HandOnRequest {
    std::vector<std::string> inputs;
    std::string output;
    bool oneGrid = false;
    bool overwrite = false;
};

/// Writes one raster of a set into its file and tells how much of it is done.
using RasterWriter = std::function<void(const OpenedSet& set, const OutputRaster& raster,
                                        OutputFile& file, const ProgressFunction& progress)>;

/// Writes the rasters of a set, all of them or none, and prints their names.
void handOn(Context& context, const HandOnRequest& request, const RasterWriter& write);

}  // namespace kestms
