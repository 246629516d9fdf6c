#pragma once

#include <string>
#include <string_view>

#include "pyxis/Export.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

// The host's text: UTF-8 and UTF-16, where invalid UTF-8 bytes survive as lone surrogates.

namespace Pyxis {

/// Every byte outside well-formed UTF-8 becomes U+DC80 + (byte - 0x80).
PYXIS_API std::u16string utf8ToWide(std::string_view text);
/// The inverse of `utf8ToWide`. Other lone surrogates become three bytes each.
PYXIS_API std::string wideToUtf8(std::u16string_view text);

/// The buffer's text up to its terminator as UTF-8 (a path as its original bytes).
PYXIS_API std::string toUtf8(const StringBuffer& buffer);
/// The 16-bit characters of a wide buffer up to its terminator or its last whole character.
PYXIS_API std::u16string wideCharacters(const StringBuffer& buffer);
/// A wide buffer with the text and a terminator.
PYXIS_API StringBuffer toWideBuffer(std::string_view utf8);
/// The text with its ASCII letters in lower case.
PYXIS_API std::string lowerCase(std::string text);
/// Whether two texts are equal except for the case of ASCII letters.
PYXIS_API bool equalIgnoringCase(std::string_view one, std::string_view other);
/// A plain file specifier with the path as wide text.
PYXIS_API FileSpecifier fileSpecifier(std::string_view path);

}  // namespace Pyxis
