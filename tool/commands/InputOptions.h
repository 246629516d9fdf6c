#pragma once

#include <CLI/App.hpp>

#include "tool/scene/Context.h"

namespace kestms {

/// The options that select files of the set: --scene, --with-quality.
void addInputOptions(CLI::App& command, Context& context);
/// --skip-misfits, for commands that can do without some components.
void addSkipMisfitsOption(CLI::App& command, Context& context);

}  // namespace kestms
