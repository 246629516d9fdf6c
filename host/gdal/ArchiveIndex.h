#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/file/Expected.h"

namespace Pyxis {

/// The names of the regular files in a zip or tar archive, read by ourselves before GDAL sees the
/// archive: GDAL makes an index with every folder of every name, however many there are. Passes
/// over names that lead out of the archive. Refused when it is no archive, holds more than 20,000
/// entries or a name of more than 1,024 bytes or 32 folders, or is compressed as a whole and
/// unpacks out of proportion. `path` is a plain file.
Expected<std::vector<std::string>> readArchiveIndex(const std::string& path);

/// What may be unpacked from so many bytes: 64 MiB, or 64 times as much.
std::uint64_t mostUnpacked(std::uint64_t size);

}  // namespace Pyxis
