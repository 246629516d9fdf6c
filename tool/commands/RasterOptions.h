#pragma once

#include <CLI/App.hpp>

#include "tool/raster/ExportRequest.h"

// Options that commands for rasters and pictures share.

namespace kestms {

/// SET, --output and --overwrite.
void addFileOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten);

/// --bbox and --window.
void addPartOptions(CLI::App& command, ExportRequest& request);

/// --bands; `more` completes its help.
void addBandsOption(CLI::App& command, ExportRequest& request, const std::string& more);

/// All options that `vrt` and `export` share, including those above.
void addRasterOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten);

}  // namespace kestms
