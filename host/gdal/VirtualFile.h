#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/file/FileHead.h"

namespace Pyxis {

/// The head of a file with a special name of GDAL's: in an archive, or on the network. A file that
/// unpacks out of proportion to its archive is refused. A member has the state of its archive,
/// except for the size.
Expected<FileHead> readVirtualHead(const std::string& path, std::size_t most);

/// The paths of the files in an archive or a folder of one ("/vsizip/{a.zip}/folder") and in the
/// folders below. Refused as an index is, and when there are none.
Expected<std::vector<std::string>> listArchive(const std::string& path);

}  // namespace Pyxis
