#pragma once

#include <string>
#include <string_view>

namespace kestms {

/// The text with what XML cannot hold, control characters and bytes that are no UTF-8, replaced
/// by U+FFFD.
std::string xmlText(std::string_view text);

/// The text with markup characters escaped.
std::string escapedMarkup(std::string_view text);

}  // namespace kestms
