#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/formats/Format.h"

namespace Pyxis {

/// The files that the codecs opened recently, so that checking a file, comparing it with a set and
/// reading it open it once. Usable from several threads.
class FileCache {
  public:
    explicit FileCache(FileChanges changes = FileChanges::Notice);

    /// The file from the cache, or loaded if it is not there or has changed. Refused when it is not
    /// of this format.
    Expected<RasterPointer> open(const Format& format, const std::string& path);
    /// The same for a file of any format.
    Expected<RasterPointer> open(const std::string& path);

    /// Begins an operation of this thread and returns the previous one. Within an operation each
    /// file is checked for changes once, not at every question.
    static std::uint64_t beginOperation();
    static void endOperation(std::uint64_t before);

    /// How many files are kept. An entry takes about a kilobyte; few of the files have open
    /// datasets. Refusals are kept too if files do not change. A program that ignores changes runs
    /// one command, which asks for each file several times.
    std::size_t mostFiles() const { return changes_ == FileChanges::Ignore ? 1 << 17 : 1 << 14; }

  private:
    struct Entry {
        std::string absolutePath;
        const Format* format;
        Expected<RasterPointer> file;
        std::uint64_t lookedAt;  ///< the last operation that checked it for changes; 0: none
    };

    /// The head of a file that was not kept: the next codec is asked about it at once.
    struct LastHead {
        std::string absolutePath;
        Expected<FileHead> head;
        std::uint64_t operation;  ///< in which it was read; 0: none
    };

    /// What is kept of a file, and its format.
    std::optional<std::pair<const Format*, Expected<RasterPointer>>> find(
        std::string_view absolutePath);
    /// Whether what an operation saw holds without another look.
    bool isFresh(std::uint64_t operation) const;
    /// The head of a file. If the process can open no more files, idle ones are closed first.
    Expected<FileHead> takeHead(const std::string& absolutePath);
    void keepHead(const std::string& absolutePath, Expected<FileHead> head);
    /// Loads a file, and keeps it if that is allowed. Returns another thread's file if that was
    /// faster.
    Expected<RasterPointer> load(const Format& format, SourceFile source);
    bool mayBeKept(const Format& format, const Expected<RasterPointer>& file) const;

    const FileChanges changes_;
    std::string directory_;  ///< the working directory with its slash, if changes are ignored
    std::mutex mutex_;
    std::optional<LastHead> lastHead_;
    std::list<Entry> files_;  // the latest first
    /// By absolute path, as the working directory may change; the keys point into the entries.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> places_;
};

}  // namespace Pyxis
