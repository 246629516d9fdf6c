#pragma once

#include <filesystem>
#include <string>

namespace kestms {

/// The absolute path, its directory without links, since ".." in a path leaves the directory that a
/// link leads to. The last name stays: the files beside a link are not those beside its
/// target.
std::filesystem::path throughRealDirectory(const std::string& path);

/// How an output, `from`, names a file, so that both can move together.
std::string relativePath(const std::string& file, const std::string& from);

}  // namespace kestms
