#pragma once

#include <algorithm>
#include <filesystem>
#include <span>
#include <string_view>

#include "host/Text.h"

namespace kestms {

/// Whether a file has one of the extensions, which are in lower case with their dot; the case of
/// the file's own does not matter.
inline bool hasExtension(const std::filesystem::path& path,
                         std::span<const std::string_view> extensions) {
    return std::find(extensions.begin(), extensions.end(),
                     Pyxis::lowerCase(path.extension().string())) != extensions.end();
}

}  // namespace kestms
