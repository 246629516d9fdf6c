#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kest::platform {

using StringTable = std::map<unsigned int, std::u16string>;

/// Reads the texts of a UTF-8 string-resource file: a line per text, its id (0 to 65535), one
/// space or tab, the text; "\n", "\t" and "\\" are escapes. Other lines, such as "#" comments, are
/// skipped; the first text of an id counts.
StringTable parseStringTable(std::string_view file);

}  // namespace kest::platform
