#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/Export.h"

namespace Pyxis {

/// Whether a cached file is checked for changes, or assumed to be unchanged.
enum class FileChanges { Notice, Ignore };

/// Identifies the state of a file.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;  ///< 0: there is no such file
    std::uint64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds since 1970, at the file system's resolution
    std::int64_t changed = 0;

    bool operator==(const FileState&) const = default;
};

/// The state of a file and of the side files with its georeference.
struct FileStamp {
    FileState file;
    FileState auxiliary;
    std::vector<FileState> worldFiles;  ///< where they matter

    bool operator==(const FileStamp&) const = default;
    /// Whether a later change is sure to be noticed: the clock of the file system has ticked since
    /// the last one.
    bool settled() const;
};

/// The state of a file; the default if there is none.
FileState stateOf(const std::string& path);
FileStamp stampOf(const std::string& path, bool withWorldFiles);

/// The absolute path, of an archive as well; empty for an empty path.
PYXIS_CODECS_API std::string absolutePath(const std::string& path);

/// The file that holds a member of an archive, or the compressed file; empty for other paths. The
/// rest of the path if no part of it is a file.
PYXIS_CODECS_API std::string archiveOf(const std::string& path);

/// A file's first bytes, read before GDAL sees it.
struct FileHead {
    std::string bytes;  ///< the first ones, at most `kBytes`
    FileState state;    ///< of the whole file, before anything was read

    static constexpr std::size_t kBytes = 5000;
};

/// The head of a regular file, or of another file that the path policy allows; anything else is
/// refused without blocking. Up to `most` bytes are read.
Expected<FileHead> readHead(const std::string& path, std::size_t most = FileHead::kBytes);

/// Reads the heads of files that are not plain, for the whole process. The part that links to GDAL
/// sets it; without it they are refused.
using VirtualHeadReader = Expected<FileHead> (*)(const std::string& path, std::size_t most);
void setVirtualHeadReader(VirtualHeadReader reader);

}  // namespace Pyxis
