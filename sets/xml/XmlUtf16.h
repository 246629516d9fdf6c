#pragma once

#include <string>
#include <string_view>

namespace kest::xml {

/// Whether the text starts with a UTF-16 byte-order mark.
bool isUtf16(std::string_view text);

/// UTF-16 with a byte-order mark as UTF-8. A surrogate without its partner becomes U+FFFD; an odd
/// last byte is dropped.
std::string utf16ToUtf8(std::string_view text);

}  // namespace kest::xml
