#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The names of the band files in a FAST header's administrative record, in order and trimmed; no
/// more than seven, as many as the reader of the format knows.
std::vector<std::string> fastBandFileNames(std::string_view header);

/// Whether a band file's name stays in the header's directory: it is not a path on any system.
bool isPlainFileName(std::string_view name);

/// Whether a file may be a FAST header: its second field is the date of acquisition.
bool looksLikeFastHeader(std::string_view head);

}  // namespace Pyxis
