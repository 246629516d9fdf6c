#include <memory>
#include <string>
#include <vector>

#include "tool/actions/RasterActions.h"
#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"
#include "tool/commands/RasterOptions.h"

namespace kestms {
namespace {

/// GDAL's lossless compressions.
const std::vector<std::string> kCompressions = {"DEFLATE", "LZW", "ZSTD", "NONE"};

}  // namespace

void addExportCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = app.add_subcommand("export", "Write the set as a multi-band GeoTIFF file");
    addRasterOptions(*command, options->request, "The GeoTIFF to write (.tif)");
    command->add_flag("--cog", options->format.cloudOptimized, "Write a Cloud Optimized GeoTIFF");
    command
        ->add_option("--compress", options->format.compression,
                     "DEFLATE (default), LZW, ZSTD or NONE")
        ->transform(CLI::IsMember(kCompressions, CLI::ignore_case));
    command
        ->add_option("--co", options->format.creationOptions,
                     "A creation option of GDAL's GTiff or COG driver, as NAME=VALUE")
        ->allow_extra_args(false);
    addInputOptions(*command, context);
    command->footer(
        "Pixels are copied as they are where a band is on the grid; one line says where one is\n"
        "resampled or moved. Bands keep their names, display channels, scales, offsets, units,\n"
        "categories, metadata and, where the sensor is known, wavelengths. Bands with different\n"
        "no-data values get a mask, unless --nodata gives them one value. The names written are\n"
        "printed.\n"
        "\n"
        "Examples:\n"
        "  kestms export scene/*.TIF -o scene.tif\n"
        "  kestms export scene.xml -o scene.tif --cog --resampling bilinear\n"
        "  kestms export scene.xml -o part.tif --bands nir,red --bbox "
        "500000,5600000,510000,5610000");
    runWhenChosen(*command, context, exportSet, options);
}

}  // namespace kestms
