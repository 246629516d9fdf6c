#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Pyxis {

class FileCache;

/// Opens files on other threads and leaves them in a cache.
class ReadAhead {
  public:
    /// Ends early when `stop` returns true.
    ReadAhead(std::shared_ptr<FileCache> cache, std::vector<std::string> paths,
              std::function<bool()> stop);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;
    /// Waits for the files that are being opened, and opens no others.
    ~ReadAhead();

    /// Opens files on this thread too, until every file is opened or being opened: computing a
    /// coordinate system takes as long as opening a hundred files, and only its users wait for it.
    /// Does nothing for so few files that there are no other threads.
    void help();

  private:
    void openNextFiles();

    std::shared_ptr<FileCache> cache_;
    std::vector<std::string> paths_;
    std::function<bool()> stop_;
    std::size_t count_;
    std::atomic<std::size_t> next_{0};
    std::vector<std::thread> helpers_;
};

}  // namespace Pyxis
