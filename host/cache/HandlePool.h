#pragma once

#include <atomic>
#include <cstddef>
#include <list>
#include <mutex>
#include <unordered_map>

namespace Pyxis {

class OpenedFile;

/// The files that GDAL holds open, for the whole process. Beyond a limit those used longest ago
/// are closed; they open again when they are used.
class HandlePool {
  public:
    static HandlePool& instance();

    /// Notes that `file`, whose lock the caller holds, is in use with its datasets open.
    void used(OpenedFile& file);
    void forget(OpenedFile& file);
    /// Closes every file that nobody is using at the moment.
    void closeIdle();

    /// At most this many files stay open: no more than a quarter of what the process may open.
    static std::size_t limit();

  private:
    void closeOldest(std::size_t limit, const OpenedFile* except);

    /// Reads of one file follow one another, so most uses are of the file used last.
    std::atomic<const OpenedFile*> latest_{nullptr};
    std::mutex mutex_;
    std::list<OpenedFile*> order_;  // the latest first
    std::unordered_map<OpenedFile*, std::list<OpenedFile*>::iterator> places_;
};

}  // namespace Pyxis
