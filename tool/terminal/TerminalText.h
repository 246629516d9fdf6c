#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Text for people. Names are untrusted: nothing in them may control a terminal.

namespace kestms {

/// The text with control characters, direction overrides and invalid UTF-8 as escapes (`\n`,
/// `\x1b`, `\u202e`).
std::string printable(std::string_view utf8);

/// The same for a file's name, cut to the longest length of a path.
std::string printableName(std::string_view utf8);

/// A JSON document with such characters, which occur in its strings only, as `\uXXXX`.
std::string printableJson(std::string_view json);

/// "FILE: REASON" in one line, safe for a terminal. If the reason begins with the file's name, as
/// GDAL's messages do, the name is not repeated.
std::string fileMessage(const std::string& file, std::string_view reason);

/// The words with a separator between them.
std::string joined(const std::vector<std::string>& words, std::string_view separator);

/// The width of the text in terminal columns: two for East Asian wide characters, none for
/// combining marks.
std::size_t displayWidth(std::string_view utf8);

/// The text cut to a width in terminal columns: its beginning or its end becomes "...".
std::string shortenedLeft(std::string_view utf8, std::size_t columns);
std::string shortenedRight(std::string_view utf8, std::size_t columns);

}  // namespace kestms
