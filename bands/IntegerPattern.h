#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kest {

/// Most characters of a formatted name.
inline constexpr std::size_t kMaxNameLength = 255;

/// Puts `value` into a pattern's integer placeholders as printf would ("%d", "%03u", "%.2x") and
/// makes "%%" one sign; anything else stays as it is. At most kMaxNameLength characters.
///
/// Patterns come from resource files that anybody may write, so printf sees no more of them than a
/// placeholder's flags, numbers and conversion.
std::u16string formatInteger(std::u16string_view pattern, int value);

}  // namespace kest
