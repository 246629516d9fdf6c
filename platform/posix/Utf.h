#pragma once

#include <string>
#include <string_view>

namespace kest::platform {

/// The bytes of a path. A lone surrogate U+DC80 to U+DCFF stands for a byte that is no UTF-8; any
/// other lone surrogate comes out as the three bytes of its value.
std::string pathBytes(std::u16string_view path);

/// UTF-8 text as 16-bit characters; each byte that is no UTF-8 becomes U+FFFD.
std::u16string decodeUtf8(std::string_view text);

}  // namespace kest::platform
