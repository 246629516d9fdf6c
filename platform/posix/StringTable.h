#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kest::platform {

using StringTable = std::map<unsigned int, std::u16string>;

/// Reads the texts of a string-resource file, UTF-8: a line per text, its id (0 to 65535), one
/// space or tab, the text; "\n", "\t" and "\\" are escapes. Lines of any other form are
/// skipped, "#" comments among them; of two texts for one id the first counts.
StringTable parseStringTable(std::string_view file);

}  // namespace kest::platform
