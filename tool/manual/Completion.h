#pragma once

#include <string>

#include "tool/manual/CommandText.h"

namespace kestms {

/// A shell script that completes commands, options and their values, else file names.
std::string bashCompletion(const CommandText& program);
std::string zshCompletion(const CommandText& program);
std::string fishCompletion(const CommandText& program);

}  // namespace kestms
