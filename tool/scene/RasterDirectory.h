#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestms {

/// Whether one name comes before another in natural order: runs of digits compare as numbers
/// ("band2" before "band10"), everything else byte by byte.
bool comesBefore(std::string_view left, std::string_view right);

/// The paths of the raster files in a directory and the directories below it, in natural order:
/// regular files with an extension that promises a raster, and others that a registered codec
/// reads. Hidden files and directories are passed over, links to directories not followed. Throws
/// a Failure with ExitCode::CannotRead when the directory cannot be read or holds none.
std::vector<std::string> rasterFilesBelow(const std::string& directory);

}  // namespace kestms
