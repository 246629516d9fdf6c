#pragma once

#include <string>

#include "tool/scene/Explanation.h"
#include "tool/terminal/Json.h"

namespace kestms {

/// The explanation as lines of text, for a terminal.
std::string explanationText(const Explanation& explanation);
/// The same for programs.
Json explanationJson(const Explanation& explanation);

}  // namespace kestms
