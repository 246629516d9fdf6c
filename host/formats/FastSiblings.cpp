#include "host/formats/FastSiblings.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/Text.h"
#include "host/formats/FastHeader.h"

namespace Pyxis {
namespace {

// Directories are read with system calls: the standard library's iterator ends the process on
// allocation failure.
struct Close {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, Close>;

bool beginsWith(std::string_view name, std::string_view start) {
    return equalIgnoringCase(name.substr(0, start.size()), start);
}

std::string directoryOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

bool isNamed(std::string_view name, const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(),
                       [name](const auto& own) { return equalIgnoringCase(own, name); });
}

/// Whether GDAL tries such a name for bands that a header does not name: derived from the header's
/// name, with a suffix or another last letter, or a fixed word.
bool mayBeMadeUp(std::string_view name, std::string_view header) {
    const bool lastLetterDiffers =
        name.size() == header.size() && beginsWith(name, header.substr(0, header.size() - 1));
    return lastLetterDiffers || beginsWith(name, header.substr(0, header.rfind('.'))) ||
           beginsWith(name, "band") || beginsWith(name, "imagery");
}

/// The path without links; empty when there is no such file.
std::string realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::string(real.get()) : std::string();
}

/// Whether a file is really beside the header. A header and its bands may all be links to another
/// directory.
bool isWithHeader(const std::string& file, const std::string& header) {
    const std::string real = realPath(file);
    return !real.empty() && (directoryOf(real) == realPath(directoryOf(header) + "/") ||
                             directoryOf(real) == directoryOf(realPath(header)));
}

Refusal unsafe(const char* why, const std::string& name) {
    return {Refusal::Kind::Unsafe, why + (": " + name)};
}

}  // namespace

std::optional<Refusal> whyNotSafeBeside(const std::string& header,
                                        const std::vector<std::string>& names) {
    const auto outside = std::find_if_not(names.begin(), names.end(), isPlainFileName);
    if (outside != names.end()) {
        return unsafe("the header names a file outside its directory", *outside);
    }
    const std::string folder = directoryOf(header) + "/";
    const std::string headerName = header.substr(folder.size());
    const Directory directory(opendir(folder.c_str()));
    if (!directory) {
        return unreadable(std::string("its directory cannot be listed: ") + std::strerror(errno));
    }
    while (const dirent* entry = readdir(directory.get())) {
        const std::string name = entry->d_name;
        const bool named = isNamed(name, names);
        struct stat status {};
        if ((!named && !mayBeMadeUp(name, headerName)) ||
            fstatat(dirfd(directory.get()), name.c_str(), &status, 0) != 0 ||
            (S_ISDIR(status.st_mode) && !named)) {
            continue;
        }
        if (!S_ISREG(status.st_mode)) {
            return unsafe("not a regular file", name);
        }
        const bool isLink =
            fstatat(dirfd(directory.get()), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISLNK(status.st_mode);
        if (isLink && !isWithHeader(folder + name, header)) {
            return unsafe("leads out of the header's directory", name);
        }
    }
    return std::nullopt;
}

}  // namespace Pyxis
