#include <memory>

#include "tool/actions/RasterActions.h"
#include "tool/commands/Commands.h"

namespace kestms {

namespace {

/// Fewer pixels would show nothing; more would take hours.
constexpr int kFewestPixels = 8;
constexpr int kMostPixels = 4096;

}  // namespace

void addSamplesCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<SamplesOptions>();
    CLI::App* command =
        app.add_subcommand("samples", "Write small sample sets of every naming scheme");
    command->add_option("DIR", options->directory, "Directory for the sets, made when missing")
        ->required();
    command
        ->add_option("--size", options->size,
                     "Pixels along each side of a scene (default: 256); panchromatic bands have\n"
                     "up to four times as many")
        ->check(CLI::Range(kFewestPixels, kMostPixels));
    command->add_flag("--overwrite", options->overwrite, "Replace files that are there already");
    command->footer(
        "Examples:\n"
        "  kestms samples /tmp/scenes\n"
        "  kestms info /tmp/scenes/landsat7/set.xml");
    runWhenChosen(*command, context, writeSampleSets, options);
}

}  // namespace kestms
