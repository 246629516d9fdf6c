#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/formats/Format.h"

namespace Pyxis {

/// The files that the codecs have opened of late, so that the questions whether a file is readable,
/// whether it fits a set and what it holds open it once. Usable from several threads.
class FileCache {
  public:
    explicit FileCache(FileChanges changes = FileChanges::Notice) : changes_(changes) {}

    /// The file, from the cache when it is there and has not changed since; else loaded. Refused
    /// when it is not of this format.
    Expected<RasterPointer> open(const Format& format, const std::string& path);
    /// The same for a file of whichever format.
    Expected<RasterPointer> open(const std::string& path);

    /// Begins an operation of this thread and returns that before it: within one, a file is looked
    /// at for changes once, not at every question.
    static std::uint64_t beginOperation();
    static void endOperation(std::uint64_t before);

    /// An entry is facts of a kilobyte or so; few of the files have open datasets.
    static constexpr std::size_t kMostFiles = 16384;

  private:
    struct Entry {
        RasterPointer file;
        std::uint64_t lookedAt;  ///< in which operation; 0: in none
    };

    RasterPointer find(std::string_view absolutePath);
    /// Remembers the file where that is allowed. Returns that of another thread if it was faster.
    Expected<RasterPointer> keep(const Format& format, Expected<RasterPointer> file);

    const FileChanges changes_;
    std::mutex mutex_;
    std::list<Entry> files_;  // the latest first
    /// By absolute path, as the working directory changes; the texts are the files' own.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> places_;
};

}  // namespace Pyxis
