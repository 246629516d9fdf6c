#include <memory>

#include "tool/actions/RasterActions.h"
#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"
#include "tool/commands/RasterOptions.h"

namespace kestms {

void addVrtCommand(CLI::App& app, Context& context) {
    auto request = std::make_shared<ExportRequest>();
    CLI::App* command =
        app.add_subcommand("vrt", "Write a GDAL virtual raster that shows the set as one image");
    addRasterOptions(*command, *request,
                     "The virtual raster to write (.vrt); - for standard output");
    addInputOptions(*command, context);
    command->footer(
        "Every band is exactly where it is in the world, and keeps its name, display\n"
        "channel, no-data value, mask, scale, offset, unit, categories, metadata and, where the\n"
        "sensor is known, wavelengths. Components are named relative to the virtual raster. The\n"
        "names written are printed.\n"
        "\n"
        "Examples:\n"
        "  kestms vrt scene/*.TIF -o scene.vrt\n"
        "  kestms vrt scene.xml -o scene.vrt --bands red,green,blue\n"
        "  kestms vrt scene.xml -o scene.vrt --split");
    runWhenChosen(*command, context, writeVirtualRasters, request);
}

}  // namespace kestms
