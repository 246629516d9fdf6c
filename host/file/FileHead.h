#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/file/Expected.h"

namespace Pyxis {

/// Whether a file that was read before is looked at for changes whenever it is asked for, or taken
/// to be what it was at first.
enum class FileChanges { Notice, Ignore };

/// Tells one state of a file from another.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;  ///< 0: there is no such file
    std::uint64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds since 1970, as far as the file system keeps them
    std::int64_t changed = 0;

    bool operator==(const FileState&) const = default;
};

/// The state of a file and of the files beside it that place it.
struct FileStamp {
    FileState file;
    FileState auxiliary;
    std::vector<FileState> worldFiles;  ///< where they matter

    bool operator==(const FileStamp&) const = default;
    /// Whether a later change is sure to show: the clock of the file system has ticked since the
    /// last one.
    bool settled() const;
};

FileStamp stampOf(const std::string& path, bool withWorldFiles);

/// The path from the root on, of an archive as well; empty for an empty path.
std::string absolutePath(const std::string& path);

/// What is known of a file before GDAL sees it.
struct FileHead {
    std::string bytes;  ///< the first ones, `kBytes` where there are so many
    FileState state;    ///< of the whole file, as it was before anything was read

    static constexpr std::size_t kBytes = 5000;
};

/// The head of a regular file, or of what else the path policy allows; anything else is refused
/// without waiting for it. Up to `most` bytes are read.
Expected<FileHead> readHead(const std::string& path, std::size_t most = FileHead::kBytes);

/// Reads the heads of files that are no plain ones, for the whole process. Whoever links to GDAL
/// sets it; without one they are refused.
using VirtualHeadReader = Expected<FileHead> (*)(const std::string& path, std::size_t most);
void setVirtualHeadReader(VirtualHeadReader reader);

}  // namespace Pyxis
