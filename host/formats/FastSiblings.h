#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/file/Expected.h"

namespace Pyxis {

/// Why GDAL must not look for the band files of a FAST header, given by its absolute path: the
/// header names a file of another directory, or one of the files beside it that could be taken for
/// a band is no regular file, which could block, or a link that leads out of the directory. Nothing
/// when it may. `names` are the header's own names for its bands.
std::optional<Refusal> whyNotSafeBeside(const std::string& header,
                                        const std::vector<std::string>& names);

/// Whether two names are the same but for the case of ASCII letters.
bool equalIgnoringCase(std::string_view one, std::string_view other);

}  // namespace Pyxis
