#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace Pyxis {

class GdalFormat;
class OpenedFile;

/// The files that the codecs have opened of late, so that the questions whether a file is readable,
/// whether it fits a set and what it holds open it once. Usable from several threads.
class FileCache {
  public:
    /// Whether a file that is there is looked at for changes whenever it is asked for, or taken for
    /// as long as the cache lives to be what it was at first.
    enum class Changes { Notice, Ignore };

    explicit FileCache(Changes changes = Changes::Notice) : changes_(changes) {}

    /// The file, from the cache when it is there and has not changed since; else opened. Null, with
    /// the reason in `why`, when it cannot be opened.
    std::shared_ptr<OpenedFile> open(const GdalFormat& format, const std::string& path,
                                     std::string& why);

    /// An entry is facts of a kilobyte or so; few of the files have open datasets.
    static constexpr std::size_t kMostFiles = 16384;

  private:
    struct Entry {
        std::string key;
        std::shared_ptr<OpenedFile> file;
    };

    std::shared_ptr<OpenedFile> find(const std::string& key);
    void keep(const std::string& key, const std::shared_ptr<OpenedFile>& file);

    const Changes changes_;
    std::mutex mutex_;
    std::list<Entry> entries_;  // the latest first
    std::unordered_map<std::string, std::list<Entry>::iterator> places_;
};

}  // namespace Pyxis
