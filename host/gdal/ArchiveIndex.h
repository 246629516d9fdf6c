#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/file/Expected.h"

namespace Pyxis {

/// The names of the regular files in a zip or tar archive, read before GDAL sees the archive:
/// GDAL's index has every folder of every name, without a limit. Skips names that lead out of the
/// archive. Refused when it is not an archive, has more than 20,000 entries or a name of more than
/// 1,024 bytes or 32 folders, or is compressed as a whole and unpacks out of proportion. `path` is
/// a plain file.
Expected<std::vector<std::string>> readArchiveIndex(const std::string& path);

/// The most that so many bytes may unpack to: 64 MiB, or 64 times the size.
std::uint64_t mostUnpacked(std::uint64_t size);

}  // namespace Pyxis
