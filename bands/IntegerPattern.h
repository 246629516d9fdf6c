#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kest {

/// Most characters of a formatted name (compatibility.md, 25).
inline constexpr std::size_t kMaxNameLength = 255;

/// Fills a pattern's integer placeholders with `value` as printf would ("%d", "%03u", "%.2x") and
/// turns "%%" into one sign; anything else is unchanged. At most kMaxNameLength characters.
///
/// Patterns come from untrusted resource files, so printf gets only a placeholder's flags, numbers
/// and conversion.
std::u16string formatInteger(std::u16string_view pattern, int value);

}  // namespace kest
