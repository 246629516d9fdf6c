#pragma once

#include <CLI/App.hpp>
#include <string>

#include "tool/scene/Context.h"

namespace kestms {

/// `kestms help [COMMAND]`, which people try before `kestms COMMAND --help`.
void addHelpCommand(CLI::App& app, Context& context);

/// What to say of a word that is no command, with the command that may have been meant.
std::string noSuchCommand(const CLI::App& app, const std::string& word);

}  // namespace kestms
