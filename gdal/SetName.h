#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestgdal {

/// A dataset as GDAL programs name it: "KESTMS:PATH", or with one of the set's pixel sizes
/// "KESTMS:"PATH":15m", whose quotes may be missing.
struct SetName {
    std::string path;
    std::string grid;  ///< label of a pixel size; empty for the whole set
};

/// Nothing for a text without the prefix, or with an unterminated quote.
std::optional<SetName> parseSetName(std::string_view text);

/// The name of the part of a set that has that pixel size.
std::string partName(const std::string& path, const std::string& grid);

/// Whether a file that begins with these bytes is a component list document.
bool looksLikeComponentList(std::string_view head);

/// The path as an argument of the tool: itself, or "@PATH" for a text file that lists files.
std::string argumentFor(const std::string& path);

}  // namespace kestgdal
