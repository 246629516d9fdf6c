#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace kestms {

/// The whole text of a file or stream as UTF-8; UTF-16 with a byte-order mark is converted and
/// byte-order marks are dropped. `name` is for the Failure with ExitCode::CannotRead.
std::string readText(std::istream& stream, const std::string& name);
std::string readTextFile(const std::string& path);

/// Whether a text begins like an XML document.
bool looksLikeXml(std::string_view text);
/// Whether a regular file or pipe begins like XML, except like a virtual raster.
bool fileMayListComponents(const std::string& path);

/// The lines of a text, without line ends; empty ones are left out.
std::vector<std::string> linesOf(std::string_view text);

}  // namespace kestms
