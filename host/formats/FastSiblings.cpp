#include "host/formats/FastSiblings.h"

#include <cpl_string.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace Pyxis {
namespace {

bool beginsWith(const std::string& name, std::string_view start) {
    return EQUALN(name.c_str(), start.data(), start.size());
}

bool isNamed(const std::string& name, const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(),
                       [&name](const auto& own) { return EQUAL(own.c_str(), name.c_str()); });
}

/// Whether GDAL makes such a name up for the bands that a header does not name: from the header's
/// own name, with an ending or another last letter, or from a word for all headers.
bool mayBeMadeUp(const std::string& name, const fs::path& header) {
    const std::string headerName = header.filename().string();
    const bool lastLetterDiffers =
        name.size() == headerName.size() &&
        beginsWith(name, std::string_view(headerName).substr(0, headerName.size() - 1));
    return lastLetterDiffers || beginsWith(name, header.stem().string()) ||
           beginsWith(name, "band") || beginsWith(name, "imagery");
}

/// The directories in which band files may really lie: a header and its bands may be linked
/// together to where they are kept.
bool liesWithHeader(const fs::path& file, const fs::path& header) {
    std::error_code error;
    const fs::path directory = fs::canonical(file, error).parent_path();
    return !error && (directory == fs::canonical(header.parent_path(), error) ||
                      directory == fs::canonical(header, error).parent_path());
}

}  // namespace

std::string whyNotSafeBeside(const std::string& header, const std::vector<std::string>& names) {
    std::error_code error;
    const fs::path path = fs::absolute(header, error);
    fs::directory_iterator entries(path.parent_path(), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().string();
        const bool named = isNamed(name, names);
        if (!named && !mayBeMadeUp(name, path)) {
            continue;
        }
        std::error_code gone;
        const fs::file_status status = entries->status(gone);
        if (!fs::exists(status) || (fs::is_directory(status) && !named)) {
            continue;
        }
        if (!fs::is_regular_file(status)) {
            return "not a regular file: " + name;
        }
        if (entries->is_symlink(gone) && !liesWithHeader(entries->path(), path)) {
            return "leads out of the header's directory: " + name;
        }
    }
    return error ? "its directory cannot be listed: " + error.message() : "";
}

}  // namespace Pyxis
