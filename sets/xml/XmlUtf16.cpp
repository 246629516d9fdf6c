#include "sets/xml/XmlUtf16.h"

#include <cstdint>

namespace kest::xml {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void append(char32_t value, std::string& out) {
    const auto continuation = [&out, value](unsigned int shift) {
        out.push_back(static_cast<char>(0x80 | (value >> shift & 0x3F)));
    };
    if (value < 0x80) {
        out.push_back(static_cast<char>(value));
    } else if (value < 0x800) {
        out.push_back(static_cast<char>(0xC0 | value >> 6));
        continuation(0);
    } else if (value < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | value >> 12));
        continuation(6);
        continuation(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | value >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

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
        append(value, out);
    }
    return out;
}

}  // namespace kest::xml
