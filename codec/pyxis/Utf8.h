#pragma once

#include <cstddef>
#include <cstdint>

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

}  // namespace Pyxis
