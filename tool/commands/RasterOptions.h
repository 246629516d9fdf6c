#pragma once

#include <CLI/App.hpp>

#include "tool/raster/RasterExport.h"

// Options that the commands share which make rasters and pictures of a set.

namespace kestms {

/// SET, --output and --overwrite.
void addFileOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten);

/// --bbox and --window.
void addPartOptions(CLI::App& command, ExportRequest& request);

/// --bands; with what is left to say of it.
void addBandsOption(CLI::App& command, ExportRequest& request, const std::string& more);

/// All that `vrt` and `export` have in common, those above included.
void addRasterOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten);

}  // namespace kestms
