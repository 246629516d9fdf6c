#include "platform/posix/Utf.h"

#include <cstddef>

namespace kest::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

void appendUtf8(char32_t value, std::string& out) {
    if (value < 0x80) {
        out.push_back(static_cast<char>(value));
        return;
    }
    const int following = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    constexpr unsigned char kLead[] = {0, 0xC0, 0xE0, 0xF0};
    out.push_back(static_cast<char>(kLead[following] | (value >> (6 * following))));
    for (int shift = 6 * (following - 1); shift >= 0; shift -= 6) {
        out.push_back(static_cast<char>(0x80U | ((value >> shift) & 0x3FU)));
    }
}

/// Takes one well-formed sequence from the front of `text`, which is not empty; false, with
/// nothing taken, when there is none.
bool takeCharacter(std::string_view& text, char32_t& value) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t following = lead < 0x80                   ? 0
                                  : lead >= 0xC2 && lead < 0xE0 ? 1
                                  : lead >= 0xE0 && lead < 0xF0 ? 2
                                  : lead >= 0xF0 && lead < 0xF5 ? 3
                                                                : text.size();
    if (following >= text.size()) {
        return false;
    }
    value = following == 0 ? lead : lead & (0x3FU >> following);
    for (std::size_t i = 1; i <= following; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80) {
            return false;
        }
        value = (value << 6U) | (byte & 0x3FU);
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (value < kLeast[following] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) {
        return false;
    }
    text.remove_prefix(following + 1);
    return true;
}

}  // namespace

std::string pathBytes(std::u16string_view path) {
    std::string bytes;
    bytes.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char16_t unit = path[i];
        if (isHighSurrogate(unit) && i + 1 < path.size() && isLowSurrogate(path[i + 1])) {
            ++i;
            appendUtf8(0x10000 + ((unit & 0x3FFU) << 10U) + (path[i] & 0x3FFU), bytes);
        } else if (unit >= 0xDC80 && unit < 0xDD00) {
            bytes.push_back(static_cast<char>(unit & 0xFFU));
        } else {
            appendUtf8(unit, bytes);
        }
    }
    return bytes;
}

std::u16string decodeUtf8(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        char32_t value = 0;
        if (!takeCharacter(text, value)) {
            wide.push_back(kReplacement);
            text.remove_prefix(1);
        } else if (value < 0x10000) {
            wide.push_back(static_cast<char16_t>(value));
        } else {
            wide.push_back(static_cast<char16_t>(0xD7C0 + (value >> 10U)));
            wide.push_back(static_cast<char16_t>(0xDC00 + (value & 0x3FFU)));
        }
    }
    return wide;
}

}  // namespace kest::platform
