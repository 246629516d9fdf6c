#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/file/Expected.h"

namespace Pyxis {

/// Why GDAL must not look for the band files of a FAST header, given by its absolute path: the
/// header names a file of another directory, or a possible band file beside it is not a regular
/// file, which could block, or is a link out of the directory. Nothing when GDAL may. `names` are
/// the header's names for its bands.
std::optional<Refusal> whyNotSafeBeside(const std::string& header,
                                        const std::vector<std::string>& names);

}  // namespace Pyxis
