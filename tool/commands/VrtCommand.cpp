#include <memory>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/raster/HandOn.h"
#include "tool/raster/VirtualRaster.h"

namespace kestms {
namespace {

ExitCode writeVirtualRasters(Context& context, const HandOnRequest& request) {
    handOn(context, request,
           [](const OpenedSet& /*set*/, const OutputRaster& raster, OutputFile& file,
              const ProgressFunction& /*progress*/) { file.write(virtualRasterText(raster)); });
    return ExitCode::Success;
}

}  // namespace

void addVrtCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<HandOnRequest>();
    CLI::App* command =
        app.add_subcommand("vrt", "Write GDAL virtual rasters that show the set as one image");
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command->add_option("-o,--output", options->output, "The virtual raster to write")->required();
    command->add_flag("--one-grid", options->oneGrid,
                      "One raster with all bands, on the grid of the smallest pixels");
    command->add_flag("--overwrite", options->overwrite,
                      "Replace the output when it is there already");
    command->footer(
        "Without --one-grid there is a raster for each bucket: bands of one pixel size. Where\n"
        "there are several, bucket N goes to OUT_N.vrt. The names written are printed. Bands\n"
        "keep their names, display channels, no-data values and, where the sensor is known,\n"
        "wavelengths. Components are named relative to the virtual raster.\n"
        "\n"
        "Examples:\n"
        "  kestms vrt scene/*.TIF -o scene.vrt\n"
        "  kestms vrt scene.xml -o scene/all.vrt --one-grid");
    command->callback([&context, options] {
        context.action = [&context, options] { return writeVirtualRasters(context, *options); };
    });
}

}  // namespace kestms
