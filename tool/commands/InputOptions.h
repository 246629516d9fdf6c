#pragma once

#include <CLI/App.hpp>

#include "tool/scene/Context.h"

namespace kestms {

/// The options that select files of the set: --scene, --with-quality, --skip-misfits.
void addInputOptions(CLI::App& command, Context& context);

}  // namespace kestms
