#pragma once

#include <string>

#include "tool/manual/CommandText.h"

namespace kestms {

/// What a shell reads to complete commands, options and their values. Where nothing else fits,
/// names of files are completed.
std::string bashCompletion(const CommandText& program);
std::string zshCompletion(const CommandText& program);
std::string fishCompletion(const CommandText& program);

}  // namespace kestms
