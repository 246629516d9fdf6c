#include <memory>
#include <string>

#include "tool/Commands.h"
#include "tool/samples/SampleSets.h"

namespace kestms {

void addSamplesCommand(CLI::App& app, Context& context) {
    auto directory = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("samples", "Write small sample sets of every naming scheme");
    command->add_option("DIR", *directory, "Directory for the sets, made when missing")->required();
    command->footer(
        "Examples:\n"
        "  kestms samples /tmp/scenes\n"
        "  kestms info /tmp/scenes/landsat7/set.xml");
    command->callback([&context, directory] {
        context.action = [directory] {
            samples::writeSamples(*directory);
            return ExitCode::Success;
        };
    });
}

}  // namespace kestms
