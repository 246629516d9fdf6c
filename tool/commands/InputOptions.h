#pragma once

#include <CLI/App.hpp>

#include "tool/scene/Context.h"

namespace kestms {

/// The options that say which of the named files make the set: --scene, --with-quality.
void addInputOptions(CLI::App& command, Context& context);
/// --skip-misfits, for commands that go on with the others.
void addSkipMisfitsOption(CLI::App& command, Context& context);

}  // namespace kestms
