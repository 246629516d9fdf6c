#pragma once

#include <string>

#include "tool/manual/CommandText.h"

namespace kestms {

/// A page for man(1), in roff: the program's own (all commands, in short), or one of its commands'.
/// `version` is shown at its foot.
std::string programPage(const CommandText& program, const std::string& version);
std::string commandPage(const CommandText& program, const CommandText& command,
                        const std::string& version);

}  // namespace kestms
