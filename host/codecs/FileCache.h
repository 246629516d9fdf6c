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
    /// The file, from the cache when it is there and has not changed since; else opened. Null, with
    /// the reason in `why`, when it cannot be opened.
    std::shared_ptr<OpenedFile> open(const GdalFormat& format, const std::string& path,
                                     std::string& why);

  private:
    struct Entry {
        std::string key;
        std::shared_ptr<OpenedFile> file;
    };

    /// An entry is facts of a kilobyte or so; few of the files have open datasets.
    static constexpr std::size_t kMostFiles = 16384;

    std::shared_ptr<OpenedFile> find(const std::string& key);
    void keep(const std::string& key, const std::shared_ptr<OpenedFile>& file);

    std::mutex mutex_;
    std::list<Entry> entries_;  // the latest first
    std::unordered_map<std::string, std::list<Entry>::iterator> places_;
};

}  // namespace Pyxis
