#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
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
    /// Codecs that share a driver share its opened files. The path is absolute, as the working
    /// directory changes.
    struct Key {
        std::string_view driver;
        std::string_view path;

        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const {
            return std::hash<std::string_view>()(key.path);  // one driver reads a file
        }
    };
    struct Entry {
        Key key;  ///< looks at the driver's constant name, and at the file's path
        std::shared_ptr<OpenedFile> file;
    };

    std::shared_ptr<OpenedFile> find(const Key& key);
    /// The file from now on: that of another thread if it was faster.
    std::shared_ptr<OpenedFile> keep(std::string_view driver,
                                     const std::shared_ptr<OpenedFile>& file);

    const Changes changes_;
    std::mutex mutex_;
    std::list<Entry> entries_;  // the latest first
    std::unordered_map<Key, std::list<Entry>::iterator, Hash> places_;
};

}  // namespace Pyxis
