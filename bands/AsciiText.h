#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

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

/// The texts between the signs; one more than there are signs.
inline std::vector<std::u16string> split(std::u16string_view text, char16_t sign) {
    std::vector<std::u16string> parts;
    for (std::size_t at = text.find(sign); at != text.npos; at = text.find(sign)) {
        parts.emplace_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    parts.emplace_back(text);
    return parts;
}

constexpr bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t a, char16_t b) { return toUpper(a) == toUpper(b); });
}

}  // namespace kest
