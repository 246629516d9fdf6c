#pragma once

#include <string>

#include "tool/manual/CommandText.h"

namespace kestms {

/// A manual page in roff: that of the program (all commands, in short), or of one command. Its
/// footer shows `version`.
std::string programPage(const CommandText& program, const std::string& version);
std::string commandPage(const CommandText& program, const CommandText& command,
                        const std::string& version);

}  // namespace kestms
