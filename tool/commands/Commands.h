#pragma once

#include <CLI/App.hpp>
#include <memory>

#include "tool/scene/Context.h"

// Each function adds one command, with its options and examples, to the command line.

namespace kestms {

void addListCommand(CLI::App& app, Context& context);
void addScenesCommand(CLI::App& app, Context& context);
void addCheckCommand(CLI::App& app, Context& context);
void addInfoCommand(CLI::App& app, Context& context);
void addQuicklookCommand(CLI::App& app, Context& context);
void addSamplesCommand(CLI::App& app, Context& context);
void addVrtCommand(CLI::App& app, Context& context);
void addExportCommand(CLI::App& app, Context& context);
void addStacCommand(CLI::App& app, Context& context);
void addProductsCommand(CLI::App& app, Context& context);

/// Makes the action the one to run when the command is chosen.
template <typename Options>
void runWhenChosen(CLI::App& command, Context& context,
                   ExitCode (*action)(Context& context, const Options& options),
                   const std::shared_ptr<Options>& options) {
    command.callback([&context, action, options] {
        context.action = [&context, action, options] { return action(context, *options); };
    });
}

}  // namespace kestms
