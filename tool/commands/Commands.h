#pragma once

#include <CLI/App.hpp>

#include "tool/scene/Context.h"

// Each function adds one command, with its options and examples, to the command line. The command
// sets `Context::action` when it is chosen.

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

}  // namespace kestms
