#include <memory>

#include "tool/actions/RasterActions.h"
#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"

namespace kestms {

void addStacCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<StacOptions>();
    CLI::App* command = app.add_subcommand("stac", "Write a STAC item that describes the scene");
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command
        ->add_option("-o,--output", options->output,
                     "The item to write (.json); - for standard output")
        ->required();
    command->add_flag("--overwrite", options->overwrite,
                      "Replace the output when it is there already");
    command->add_flag("--absolute", options->absolute,
                      "Name files by file:// addresses, not relative to the item");
    command->add_option("--datetime", options->time,
                        "When the scene was recorded: a day, a time in UTC\n"
                        "(2018-06-29T00:02:41Z), or FROM/TO; by default as in its names and\n"
                        "its metadata file");
    addInputOptions(*command, context);
    command->footer(
        "The item is of STAC 1.0 with the extensions projection, eo, raster and processing. Every\n"
        "file is an asset with its bands: names, common names, wavelengths, grid, pixel size,\n"
        "no-data value, scale and offset. Layers that are set aside are assets with their role.\n"
        "\n"
        "Examples:\n"
        "  kestms stac scene/ -o scene.json\n"
        "  kestms stac scene/*.tif -o scene.json --datetime 2021-05-03 --absolute");
    runWhenChosen(*command, context, writeStacItem, options);
}

}  // namespace kestms
