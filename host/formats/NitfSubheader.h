#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The band representations (IREPBANDn) of an image subheader, blanks trimmed, in band order; the
/// bands before the place where a damaged header ends. `version20` tells NITF 2.0 from 2.1 and
/// NSIF 1.0.
std::vector<std::string> bandRepresentations(std::string_view subheader, bool version20);

/// The length of the whole file as its header states it; 0 when it states none (the writer did not
/// know, or the field is damaged).
unsigned long long statedFileLength(std::string_view fileHeader);

/// Whether a file header is of version 2.0.
bool isVersion20(std::string_view fileHeader);

}  // namespace Pyxis
