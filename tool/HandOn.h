#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tool/BandFacts.h"
#include "tool/OutputFile.h"
#include "tool/OutputLayout.h"
#include "tool/Progress.h"

namespace kestms {

/// Writes one raster into its file and tells how much of it is done.
using RasterWriter =
    std::function<void(const OutputRaster& raster, const std::vector<BandFacts>& facts,
                       OutputFile& file, const ProgressFunction& progress)>;

/// Writes the rasters of a set, all of them or none, and prints their names.
void handOn(Context& context, const OpenedSet& set, const std::string& path, Grids grids,
            const RasterWriter& write);

}  // namespace kestms
