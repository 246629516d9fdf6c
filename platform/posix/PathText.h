#pragma once

#include <string>
#include <string_view>

namespace kest::platform {

/// The bytes of a path: UTF-8, where a lone surrogate U+DC80 to U+DCFF stands for a byte that is
/// no UTF-8.
std::string pathBytes(std::u16string_view path);

/// UTF-8 as 16-bit text, with malformed bytes as such surrogates.
std::u16string wideFromUtf8(std::string_view text);

}  // namespace kest::platform
