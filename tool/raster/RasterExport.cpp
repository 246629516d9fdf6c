#include "tool/raster/RasterExport.h"

#include <filesystem>
#include <memory>
#include <ostream>

#include "tool/raster/BandSelection.h"
#include "tool/raster/LayerStyle.h"
#include "tool/scene/InputText.h"
#include "tool/scene/OpenedSet.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

using Files = std::vector<std::unique_ptr<OutputFile>>;

void sayWhatHappens(const Context& context, const OutputRaster& raster,
                    const std::string& resampling) {
    if (const std::string note = resamplingNote(raster, resampling); !note.empty()) {
        context.warn(raster.path, note);
    }
}

/// A style of the user's own stays.
void addStyle(const Context& context, const ExportRequest& request, const OutputRaster& raster,
              Files& files) {
    const std::string style = request.withStyle ? layerStyle(raster) : "";
    const std::string path = layerStylePath(raster.path);
    std::error_code error;
    if (style.empty()) {
        return;
    }
    if (!request.overwrite && std::filesystem::is_regular_file(path, error)) {
        if (readTextFile(path) != style) {
            context.warn(path, "the style that is there stays");
        }
        return;
    }
    files.push_back(
        std::make_unique<OutputFile>(path, OutputRules{context.inputs, request.overwrite}));
    files.back()->write(style);
}

}  // namespace

std::vector<Band> bandsOf(const OpenedSet& set, const ExportRequest& request) {
    std::vector<Band> bands = selectBands(set.bands(), request.bands);
    renameBands(bands, request.names);
    if (request.displayOrder) {
        putInDisplayOrder(bands);
    }
    return bands;
}

void exportRasters(Context& context, const ExportRequest& request, OutputFormat format,
                   const RasterWriter& write) {
    refuseStandardOutput(request.output);
    std::error_code ignored;
    if (std::filesystem::is_directory(request.output, ignored)) {
        throw Failure(ExitCode::CannotWrite, request.output, "is a directory");
    }
    requireExtension(request.output, format);
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters =
        layOut(bandsOf(set, request), request.output, request.grid);
    Files files;
    for (const OutputRaster& raster : rasters) {
        files.push_back(std::make_unique<OutputFile>(
            raster.path, OutputRules{context.inputs, request.overwrite}));
    }
    VirtualRasterOptions options;
    options.paths = format == OutputFormat::VirtualRaster ? VirtualRasterOptions::Paths::Relative
                                                          : VirtualRasterOptions::Paths::Absolute;
    options.resampling = request.resampling;
    options.noData = request.noData;
    ProgressBar bar(context.err, isTerminal(context.err));
    for (std::size_t i = 0; i < rasters.size(); ++i) {
        const VirtualRaster pixels(rasters[i], options);
        std::vector<std::string> notes = pixels.leftOut();
        sayWhatHappens(context, rasters[i], request.resampling);
        const auto count = static_cast<double>(rasters.size());
        for (const std::string& note : write(rasters[i], pixels, *files[i], [&](double part) {
                 bar.show((static_cast<double>(i) + part) / count);
             })) {
            notes.push_back(note);
        }
        for (const std::string& note : notes) {
            context.warn(rasters[i].path, note);
        }
        addStyle(context, request, rasters[i], files);
    }
    commitTogether(files);
    for (const OutputRaster& raster : rasters) {
        context.out << printable(raster.path) << "\n";
    }
}

void printVirtualRaster(Context& context, const ExportRequest& request) {
    if (request.grid.split) {
        throw Failure(ExitCode::Usage, request.output, "--split writes several files; name one");
    }
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters =
        layOut(bandsOf(set, request), "standard output", request.grid);
    VirtualRasterOptions options;
    options.paths = VirtualRasterOptions::Paths::Absolute;
    options.resampling = request.resampling;
    options.noData = request.noData;
    const VirtualRaster pixels(rasters.front(), options);
    sayWhatHappens(context, rasters.front(), request.resampling);
    context.out << pixels.text();
}

}  // namespace kestms
