#pragma once

#include <string>
#include <vector>

#include "tool/raster/ExportRequest.h"
#include "tool/samples/SampleSets.h"
#include "tool/scene/Context.h"

// The commands that cannot do without GDAL. They are in a module that the program loads when such a
// command is chosen, because loading GDAL takes longer than most other commands.

namespace kestms {

ExitCode writeVirtualRasters(Context& context, const ExportRequest& request);

struct ExportOptions {
    ExportRequest request;
    GeoTiffOptions format;
};
ExitCode exportSet(Context& context, const ExportOptions& options);

struct QuicklookOptions {
    ExportRequest request;
    std::vector<std::string> rgb;
    int size = 1024;
};
ExitCode drawPicture(Context& context, const QuicklookOptions& options);

struct StacOptions {
    std::vector<std::string> inputs;
    std::string output;
    std::string time;
    bool absolute = false;
    bool overwrite = false;
};
ExitCode writeStacItem(Context& context, const StacOptions& options);

struct SamplesOptions {
    std::string directory;
    int size = samples::kUsualPixels;
    bool overwrite = false;
};
ExitCode writeSampleSets(Context& context, const SamplesOptions& options);

}  // namespace kestms
