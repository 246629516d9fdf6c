#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tool/scene/Context.h"

namespace kestms {

/// Whether one name comes before another in natural order: runs of digits compare as numbers
/// ("band2" before "band10"), everything else byte by byte.
bool comesBefore(std::string_view left, std::string_view right);

/// GDAL's name for the inside of an archive, or for a folder in one; empty for another path.
/// `status` is that of the path.
std::string insideOf(const std::string& path, const std::filesystem::file_status& status);
std::string insideOf(const std::string& path);

/// Whether a path is a directory or an archive, or a folder in one.
bool isPlaceToLook(const std::string& path, const std::filesystem::file_status& status);
bool isPlaceToLook(const std::string& path);

struct FolderContents {
    std::vector<std::string> rasters;
    /// What nobody has looked into, for a message: archives, links to folders,
    /// compressed files.
    std::string unopened;
};

/// The paths of the raster files in a place to look and the folders below it, in natural order:
/// regular files with the extension of a raster, and others that a registered codec reads. Skips
/// hidden files and directories, and does not follow links to directories. Throws a Failure with
/// ExitCode::CannotRead when the place cannot be read or has none.
FolderContents rasterFilesBelow(const std::string& directory);

/// Reports in one line what in a folder was not looked into; nothing without any.
void noteUnopened(const Context& context, const std::string& folder,
                  const FolderContents& contents);

}  // namespace kestms
