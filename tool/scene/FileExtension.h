#pragma once

#include <algorithm>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace kestms {

/// Whether a file has one of the extensions, which are in lower case with their dot; the case of
/// the file's own does not matter.
inline bool hasExtension(const std::filesystem::path& path,
                         std::span<const std::string_view> extensions) {
    std::string own = path.extension().string();
    std::transform(own.begin(), own.end(), own.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return std::find(extensions.begin(), extensions.end(), own) != extensions.end();
}

}  // namespace kestms
