#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// Digits and letter case in file names of satellite products: ASCII only, whatever the locale.

namespace kest {

constexpr bool isDigit(char16_t character) {
    return character >= u'0' && character <= u'9';
}

constexpr char16_t toUpper(char16_t character) {
    return character >= u'a' && character <= u'z' ? static_cast<char16_t>(character - (u'a' - u'A'))
                                                  : character;
}

inline std::u16string upperCase(std::u16string_view text) {
    std::u16string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), toUpper);
    return upper;
}

constexpr bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t a, char16_t b) { return toUpper(a) == toUpper(b); });
}

}  // namespace kest
