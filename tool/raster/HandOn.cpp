#include "tool/raster/HandOn.h"

#include <filesystem>
#include <memory>
#include <ostream>

#include "tool/terminal/Interrupt.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

void writeAll(Context& context, const OpenedSet& set, const std::vector<OutputRaster>& rasters,
              const std::vector<std::unique_ptr<OutputFile>>& files, const RasterWriter& write) {
    ProgressBar bar(context.err, isTerminal(context.err));
    const auto count = static_cast<double>(rasters.size());
    for (std::size_t i = 0; i < rasters.size(); ++i) {
        write(set, rasters[i], *files[i],
              [&](double part) { bar.show((static_cast<double>(i) + part) / count); });
    }
}

}  // namespace

void handOn(Context& context, const HandOnRequest& request, const RasterWriter& write) {
    std::error_code ignored;
    if (std::filesystem::is_directory(request.output, ignored)) {
        throw Failure(ExitCode::CannotWrite, request.output, "is a directory");
    }
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters =
        layOut(set, request.output, request.oneGrid ? Grids::OneForAll : Grids::OnePerBucket);
    std::vector<std::unique_ptr<OutputFile>> files;
    for (const OutputRaster& raster : rasters) {
        files.push_back(std::make_unique<OutputFile>(
            raster.path, OutputRules{context.inputs, request.overwrite}));
    }
    writeAll(context, set, rasters, files, write);
    commitTogether(files);
    for (const OutputRaster& raster : rasters) {
        context.out << printable(raster.path) << "\n";
    }
}

}  // namespace kestms
