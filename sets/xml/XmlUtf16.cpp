#include "sets/xml/XmlUtf16.h"

#include <cstddef>

#include "pyxis/Utf8.h"

namespace kest::xml {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

}  // namespace

bool isUtf16(std::string_view text) {
    return text.starts_with("\xFE\xFF") || text.starts_with("\xFF\xFE");
}

std::string utf16ToUtf8(std::string_view text) {
    const bool bigEndian = text[0] == '\xFE';
    const auto unit = [text, bigEndian](std::size_t at) {
        const auto first = static_cast<unsigned char>(text[at]);
        const auto second = static_cast<unsigned char>(text[at + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 2; at + 1 < text.size(); at += 2) {
        char32_t value = unit(at);
        if (value >= 0xD800 && value < 0xE000) {
            const char32_t low = at + 3 < text.size() ? unit(at + 2) : 0;
            if (value < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                value = 0x10000 + ((value - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            } else {
                value = kReplacement;
            }
        }
        char bytes[Pyxis::kLongestUtf8];
        out.append(bytes, Pyxis::putUtf8(value, bytes));
    }
    return out;
}

}  // namespace kest::xml
