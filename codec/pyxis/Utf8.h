#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Pyxis {

/// The most bytes that `putUtf8` writes.
inline constexpr std::size_t kLongestUtf8 = 6;

/// Writes the UTF-8 sequence of a value of up to 31 bits, as in the first definition of UTF-8;
/// returns its end. Nothing is checked: surrogates become three bytes.
inline char* putUtf8(std::uint32_t value, char* out) {
    if (value < 0x80) {
        *out = static_cast<char>(value);
        return out + 1;
    }
    std::size_t bytes = 2;
    while (bytes < kLongestUtf8 && value >> (5 * bytes + 1) != 0) {
        ++bytes;
    }
    *out++ = static_cast<char>(0xFFU << (8 - bytes) | value >> (6 * (bytes - 1)));
    for (std::size_t left = bytes - 1; left > 0; --left) {
        *out++ = static_cast<char>(0x80 | (value >> (6 * (left - 1)) & 0x3F));
    }
    return out;
}

/// The length of the well-formed UTF-8 sequence at the start of a text, which is not empty, with
/// its value; 0 when there is none.
inline std::size_t getUtf8(std::string_view text, char32_t& value) {
    constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text.front());
    const auto ones = static_cast<std::size_t>(std::countl_one(lead));
    const std::size_t length = ones == 0 ? 1 : ones == 1 || ones > 4 ? 0 : ones;
    if (text.size() < length) {
        return 0;
    }
    value = length < 2 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80) {
            return 0;
        }
        value = value << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    return value >= kLeast[length] && value <= 0x10FFFF && !isSurrogate ? length : 0;
}

}  // namespace Pyxis
