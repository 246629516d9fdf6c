#pragma once

#include <string>
#include <string_view>

namespace Pyxis {

/// The part of a path after the last slash.
inline std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

/// The part of a path up to the last slash; empty without one.
inline std::string folderOf(std::string_view path) {
    return std::string(path.substr(0, path.rfind('/') + 1));
}

/// The path of a file of that name in the folder of another; of `name`, the last part counts.
inline std::string besideFile(std::string_view path, std::string_view name) {
    return folderOf(path).append(nameOf(name));
}

}  // namespace Pyxis
