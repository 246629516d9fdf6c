#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tool/BandFacts.h"
#include "tool/Commands.h"
#include "tool/Inputs.h"
#include "tool/Interrupt.h"
#include "tool/OutputFile.h"
#include "tool/OutputLayout.h"
#include "tool/TerminalText.h"
#include "tool/VirtualRaster.h"

namespace kestms {
namespace {

struct VrtOptions {
    std::vector<std::string> inputs;
    std::string output;
    bool oneGrid = false;
};

ExitCode writeVirtualRasters(Context& context, const VrtOptions& options) {
    const OpenedSet set = openSet(context, options.inputs);
    const auto rasters = layOut(set.view(), options.output,
                                options.oneGrid ? Grids::OneForAll : Grids::OnePerBucket);
    std::vector<std::unique_ptr<OutputFile>> files;
    for (const OutputRaster& raster : rasters) {
        refuseToOverwriteInput(raster.path, set.specifier());
        std::vector<BandFacts> facts;
        for (const PlacedBand& placed : raster.bands) {
            throwIfInterrupted();
            facts.push_back(factsOf(set, *placed.band));
        }
        files.push_back(std::make_unique<OutputFile>(raster.path));
        files.back()->write(virtualRasterText(raster, facts));
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        files[i]->commit();
        context.out << printable(rasters[i].path) << "\n";
    }
    return ExitCode::Success;
}

}  // namespace

void addVrtCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<VrtOptions>();
    CLI::App* command =
        app.add_subcommand("vrt", "Write GDAL virtual rasters that show the set as one image");
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command->add_option("-o,--output", options->output, "The virtual raster to write")->required();
    command->add_flag("--one-grid", options->oneGrid,
                      "One raster with all bands, on the grid of the smallest pixels");
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
