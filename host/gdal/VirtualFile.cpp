#include "host/gdal/VirtualFile.h"

#include <cpl_conv.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "host/file/PathPolicy.h"
#include "host/gdal/ArchiveIndex.h"
#include "host/gdal/ErrorCapture.h"
#include "host/gdal/ThreadOption.h"

namespace Pyxis {
namespace {

/// Writes nothing beside a compressed file and bounds the wait for a server, unless the user sets
/// other options.
void setDefaults() {
    constexpr std::array<std::array<const char*, 2>, 4> kDefaults = {{
        {"CPL_VSIL_GZIP_WRITE_PROPERTIES", "NO"},
        {"GDAL_HTTP_CONNECTTIMEOUT", "10"},
        {"GDAL_HTTP_LOW_SPEED_TIME", "30"},
        {"GDAL_HTTP_LOW_SPEED_LIMIT", "1"},
    }};
    static std::once_flag once;
    std::call_once(once, [&] {
        for (const auto& [key, value] : kDefaults) {
            if (CPLGetConfigOption(key, nullptr) == nullptr) {
                CPLSetConfigOption(key, value);
            }
        }
    });
}

struct CloseFile {
    void operator()(VSILFILE* file) const { VSIFCloseL(file); }
};
using OpenFile = std::unique_ptr<VSILFILE, CloseFile>;

/// The files of an archive. GDAL compares a name that is not there with all of them.
class ArchiveNames {
  public:
    explicit ArchiveNames(std::vector<std::string> names)
        : inOrder_(std::move(names)), sorted_(inOrder_.begin(), inOrder_.end()) {}

    const std::vector<std::string>& inOrder() const { return inOrder_; }

    /// Whether a place is one of the files, or in one that may be an archive itself.
    bool mayHave(std::string_view place) const {
        std::size_t end = 0;
        do {
            end = place.find('/', end + 1);
            if (sorted_.find(place.substr(0, end)) != sorted_.end()) {
                return true;
            }
        } while (end != place.npos);
        return false;
    }

  private:
    std::vector<std::string> inOrder_;
    std::set<std::string, std::less<>> sorted_;
};

using Index = std::shared_ptr<const Expected<ArchiveNames>>;

Expected<ArchiveNames> readIndex(const std::string& archive) {
    Expected<std::vector<std::string>> names = readArchiveIndex(archive);
    if (!names) {
        return names.refusal();
    }
    return ArchiveNames(std::move(*names));
}

/// The indexes of recently read archives; a set needs that of its archive once a component.
Index indexOf(const std::string& archive, const FileState& state) {
    constexpr std::size_t kMostIndexes = 16;
    using Key = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t, std::int64_t, std::int64_t>;
    static std::mutex mutex;
    static auto* const indexes = new std::map<Key, Index>;
    const Key key(state.device, state.inode, state.size, state.modified, state.changed);
    const std::lock_guard<std::mutex> lock(mutex);
    if (const auto known = indexes->find(key); known != indexes->end()) {
        return known->second;
    }
    if (indexes->size() >= kMostIndexes) {
        indexes->clear();
    }
    return indexes->emplace(key, std::make_shared<const Expected<ArchiveNames>>(readIndex(archive)))
        .first->second;
}

/// The archive of a path, if it may be read.
struct Archive {
    std::string path;
    FileState state;
    Index index;
};

Expected<Archive> readableArchive(const std::string& path) {
    const std::string archive = archiveOf(path);
    const Expected<FileHead> head = readHead(archive, 0);
    if (!head) {
        return head.refusal();
    }
    // A single compressed file has no index, but must also unpack in proportion.
    const Index index = indexOf(archive, head->state);
    const bool isOneFile = path.starts_with("/vsigzip/");
    if (!*index && (!isOneFile || index->refusal().kind == Refusal::Kind::Unsafe)) {
        return index->refusal();
    }
    return Archive{archive, head->state, index};
}

/// The part of a path that names a place in the archive; empty for the archive as a whole.
std::string placeIn(const std::string& path, const std::string& archive) {
    const std::size_t at = path.find(archive) + archive.size();
    const std::size_t place = path.find_first_not_of('/', at + (path[at] == '}' ? 1 : 0));
    return place == path.npos ? std::string() : path.substr(place);
}

}  // namespace

Expected<FileHead> readVirtualHead(const std::string& path, std::size_t most) {
    const ErrorCapture errors;
    const ThreadOption noListing("GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR");
    setDefaults();
    FileState state;
    const bool isArchived = kindOf(path) == PathKind::InArchive;
    if (isArchived) {
        const Expected<Archive> archive = readableArchive(path);
        if (!archive) {
            return archive.refusal();
        }
        state = archive->state;
        if (*archive->index && !(*archive->index)->mayHave(placeIn(path, archive->path))) {
            return unreadable("no such file in the archive");
        }
    }
    VSIStatBufL status;
    if (VSIStatL(path.c_str(), &status) != 0) {
        return unreadable(!errors.message().empty() ? errors.message()
                          : isArchived              ? "no such file in the archive"
                                                    : "cannot be reached");
    }
    if (VSI_ISDIR(status.st_mode)) {
        return unreadable(isArchived ? "is a directory"
                                     : "a folder or archive on the network; name the files in it");
    }
    const std::uint64_t archiveSize = state.size;
    state.size = static_cast<std::uint64_t>(status.st_size);
    state.inode = std::max<std::uint64_t>(state.inode, 1);
    if (isArchived && state.size > mostUnpacked(archiveSize)) {
        return Refusal{Refusal::Kind::Unsafe, "claims " + std::to_string(state.size) +
                                                  " bytes in an archive of " +
                                                  std::to_string(archiveSize)};
    }
    FileHead head{std::string(std::min<std::uint64_t>(most, state.size), '\0'), state};
    if (!head.bytes.empty()) {
        const OpenFile file(VSIFOpenL(path.c_str(), "rb"));
        if (!file) {
            return unreadable(errors.message().empty() ? "cannot be opened" : errors.message());
        }
        head.bytes.resize(VSIFReadL(head.bytes.data(), 1, head.bytes.size(), file.get()));
    }
    return head;
}

Expected<std::vector<std::string>> listArchive(const std::string& path) {
    const ErrorCapture silent;
    setDefaults();
    const Expected<Archive> archive = readableArchive(path);
    if (!archive) {
        return archive.refusal();
    }
    std::string folder = placeIn(path, archive->path);
    const std::string inside = path.substr(0, path.size() - folder.size());
    if (!folder.empty() && !folder.ends_with('/')) {
        folder += '/';
    }
    std::vector<std::string> files;
    if (const Expected<ArchiveNames>& index = *archive->index) {
        for (const std::string& name : index->inOrder()) {
            if (name.starts_with(folder)) {
                files.push_back(inside);
                files.back().append(inside.ends_with('/') ? "" : "/").append(name);
            }
        }
    }
    if (files.empty()) {
        return unreadable(folder.empty() ? "an archive without files"
                                         : "no such folder in the archive");
    }
    return files;
}

}  // namespace Pyxis
