#include <memory>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/raster/GeoTiffWriter.h"
#include "tool/raster/HandOn.h"

namespace kestms {
namespace {

/// Those of GDAL's that lose nothing.
const std::vector<std::string> kCompressions = {"DEFLATE", "LZW", "ZSTD", "NONE"};

struct ExportOptions {
    HandOnRequest request;
    GeoTiffOptions format;
};

ExitCode exportSet(Context& context, const ExportOptions& options) {
    handOn(context, options.request,
           [&](const OpenedSet& set, const OutputRaster& raster, OutputFile& file,
               const ProgressFunction& progress) {
               if (!shareNoData(raster)) {
                   context.warn(raster.path,
                                "without a no-data value: the bands have different ones");
               }
               writeGeoTiff(set, raster, options.format, file, progress);
           });
    return ExitCode::Success;
}

}  // namespace

void addExportCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = app.add_subcommand("export", "Write the set as multi-band GeoTIFF files");
    command->add_option("SET|FILE", options->request.inputs, "The set")->required();
    command->add_option("-o,--output", options->request.output, "The GeoTIFF to write")->required();
    command->add_flag("--one-grid", options->request.oneGrid,
                      "One file with all bands, on the grid of the smallest pixels");
    command->add_flag("--cog", options->format.cloudOptimized, "Write Cloud Optimized GeoTIFF");
    command
        ->add_option("--compress", options->format.compression,
                     "DEFLATE (default), LZW, ZSTD or NONE")
        ->transform(CLI::IsMember(kCompressions, CLI::ignore_case));
    command->add_flag("--overwrite", options->request.overwrite,
                      "Replace the output when it is there already");
    command->footer(
        "Pixels are copied as they are. Without --one-grid there is a file for each bucket: bands\n"
        "of one pixel size. Where there are several, bucket N goes to OUT_N.tif. The names\n"
        "written are printed. Bands keep their names, display channels, no-data value and, where\n"
        "the sensor is known, wavelengths.\n"
        "\n"
        "Examples:\n"
        "  kestms export scene/*.TIF -o scene.tif\n"
        "  kestms export scene.xml -o scene.tif --one-grid --cog");
    command->callback([&context, options] {
        context.action = [&context, options] { return exportSet(context, *options); };
    });
}

}  // namespace kestms
