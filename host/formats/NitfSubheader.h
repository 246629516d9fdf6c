#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The band representations (IREPBANDn) of an image subheader, trimmed, in band order; of a
/// truncated header those before its end. `version20`: NITF 2.0, not 2.1 or NSIF 1.0.
std::vector<std::string> bandRepresentations(std::string_view subheader, bool version20);

/// The offset of the end of the last image segment; 0 when the header does not have it or is not
/// within these bytes.
unsigned long long endOfImages(std::string_view fileHeader);

/// Whether a file header is of version 2.0.
bool isVersion20(std::string_view fileHeader);

}  // namespace Pyxis
