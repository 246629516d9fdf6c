#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kest {

/// Most characters of a formatted name.
inline constexpr std::size_t kMaxNameLength = 255;

/// Puts `value` into a pattern's "%d", "%i" or "%u", with flags and a width if there are any, and
/// makes "%%" one sign; anything else stays as it is. At most kMaxNameLength characters.
///
/// Patterns come from resource files that anybody may write, so none ever reaches printf.
std::u16string formatInteger(std::u16string_view pattern, int value);

}  // namespace kest
