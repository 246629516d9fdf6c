#pragma once

#include <string>
#include <string_view>

#include "pyxis/StringBuffer.h"

// Conversions between the host's buffers and standard strings. A text ends at its first terminator,
// which a buffer need not have.

namespace kest {

/// The text as 16-bit characters.
std::u16string wideText(const Pyxis::StringBuffer& buffer);
/// The text as bytes of narrow text (UTF-8).
std::string narrowText(const Pyxis::StringBuffer& buffer);
/// A wide buffer with the text and a terminator. Throws std::length_error, as does the next, for
/// more bytes than an int can count.
Pyxis::StringBuffer wideBuffer(std::u16string_view text);
/// A narrow buffer with the text and a terminator.
Pyxis::StringBuffer narrowBuffer(std::string_view text);

}  // namespace kest
