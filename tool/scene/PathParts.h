#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "host/Text.h"

// The parts of a path as text. Every file of a set is asked for some: std::filesystem::path splits
// a whole path into a list of parts first. The views point into the path.

namespace kestms {

/// The name of a file, behind the last slash.
inline std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

/// With its dot, or empty; a name whose only dot comes first has none.
inline std::string_view extensionOf(std::string_view path) {
    const std::string_view name = nameOf(path);
    const std::size_t dot = name == ".." ? name.npos : name.rfind('.');
    return dot == name.npos || dot == 0 ? std::string_view() : name.substr(dot);
}

/// The name of a file without its extension.
inline std::string_view stemOf(std::string_view path) {
    const std::string_view name = nameOf(path);
    return name.substr(0, name.size() - extensionOf(name).size());
}

/// The folder of a file without a slash behind it; empty for a name alone.
inline std::string folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(slash == path.npos ? "" : path.substr(0, std::max<std::size_t>(slash, 1)));
}

/// Whether a file has one of the extensions, which have their dot; the case does not matter.
inline bool hasExtension(std::string_view path, std::span<const std::string_view> extensions) {
    return std::any_of(extensions.begin(), extensions.end(),
                       [extension = extensionOf(path)](std::string_view each) {
                           return Pyxis::equalIgnoringCase(each, extension);
                       });
}

}  // namespace kestms
