#pragma once

#include <string>
#include <vector>

namespace Pyxis {

/// Why GDAL must not look for the band files of a FAST header: one of the files beside it that
/// could be taken for a band is no regular file, which could block, or a link that leads out of
/// the directory. Empty when it may. `names` are the header's own names for its bands.
std::string whyNotSafeBeside(const std::string& header, const std::vector<std::string>& names);

}  // namespace Pyxis
