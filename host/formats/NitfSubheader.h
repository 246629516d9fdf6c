#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The band representations (IREPBANDn) of an image subheader, blanks trimmed, in band order; the
/// bands before the place where a damaged header ends. `version20` tells NITF 2.0 from 2.1 and
/// NSIF 1.0.
std::vector<std::string> bandRepresentations(std::string_view subheader, bool version20);

/// Where the last image segment ends, counted from the start of the file; 0 when the header does
/// not say so or does not lie in these bytes.
unsigned long long endOfImages(std::string_view fileHeader);

/// Whether a file header is of version 2.0.
bool isVersion20(std::string_view fileHeader);

}  // namespace Pyxis
