#pragma once

#include <CLI/App.hpp>
#include <string>

#include "tool/scene/Context.h"

namespace kestms {

/// `kestms help [COMMAND]`, the same as `kestms COMMAND --help`.
void addHelpCommand(CLI::App& app, Context& context);

/// The message for an unknown command, with the command that may have been meant.
std::string noSuchCommand(const CLI::App& app, const std::string& word);

}  // namespace kestms
