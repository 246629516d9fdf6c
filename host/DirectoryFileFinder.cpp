#include "host/DirectoryFileFinder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "host/Text.h"

namespace fs = std::filesystem;

namespace Pyxis {
namespace {

/// Paths are 16-bit text on Windows and bytes elsewhere, as the standard library's path type is.
fs::path pathOf(const FileSpecifier& file) {
    if constexpr (sizeof(fs::path::value_type) == 2) {
        return {utf8ToWide(toUtf8(file.string()))};
    } else {
        return {toUtf8(file.string())};
    }
}

std::string bytesOf(const fs::path& path) {
    if constexpr (sizeof(fs::path::value_type) == 2) {
        return wideToUtf8(path.u16string());
    } else {
        return path.string();
    }
}

/// Opening a pipe or a device might block, and a directory or a dangling link cannot be read.
bool isRegularFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

/// The first name in byte order, so that the result does not depend on the directory's order.
std::optional<fs::path> searchIgnoringCase(const fs::path& directory, const std::string& name) {
    std::optional<fs::path> best;
    std::error_code error;
    fs::directory_iterator entries(directory, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const fs::path& candidate = entries->path();
        if (equalIgnoringCase(bytesOf(candidate.filename()), name) &&
            (!best || candidate < *best) && isRegularFile(candidate)) {
            best = candidate;
        }
    }
    return best;
}

}  // namespace

DirectoryFileFinder::~DirectoryFileFinder() = default;

bool DirectoryFileFinder::findFile(const ImageFormatCodec* /*codec*/, const FileSpecifier& base,
                                   const FileSpecifier& nameToLookFor, FileSpecifier& found) {
    const fs::path name = pathOf(nameToLookFor).filename();
    if (name.empty()) {
        return false;
    }
    const fs::path directory = pathOf(base).parent_path();
    std::optional<fs::path> path = directory / name;
    if (!isRegularFile(*path)) {
        path = searchIgnoringCase(directory.empty() ? fs::path(".") : directory, bytesOf(name));
    }
    if (!path) {
        return false;
    }
    found = fileSpecifier(bytesOf(*path));
    return true;
}

}  // namespace Pyxis
