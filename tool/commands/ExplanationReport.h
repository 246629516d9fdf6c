#pragma once

#include <string>

#include "tool/scene/Explanation.h"
#include "tool/terminal/Json.h"

namespace kestms {

/// The explanation as lines of text, its table fitted to a width in columns (0: any width).
std::string explanationText(const Explanation& explanation, std::size_t columns);
/// The same for programs.
Json explanationJson(const Explanation& explanation);

}  // namespace kestms
