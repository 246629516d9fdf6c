#pragma once

#include <atomic>
#include <cstddef>
#include <list>
#include <mutex>
#include <unordered_map>

namespace Pyxis {

class DatasetHandle;

/// The files that GDAL holds open, for the whole process. Beyond a limit the least recently used
/// are closed; they reopen when used.
class HandlePool {
  public:
    static HandlePool& instance();

    /// Notes that `file`, whose lock the caller holds, is in use with its datasets open.
    void used(DatasetHandle& file);
    void forget(DatasetHandle& file);
    /// When the process can open no more files, closes every file but `except` that nobody is
    /// using at the moment. Returns whether to try again. The caller holds the lock of `except`.
    bool makeRoom(const DatasetHandle* except = nullptr);
    /// Closes every file that nobody is using at the moment.
    void closeIdle();

    /// The most files that stay open: at most a quarter of the current limit of the process.
    static std::size_t limit();

  private:
    void closeOldest(std::size_t limit, const DatasetHandle* except);

    /// Most uses are of the file used last.
    std::atomic<const DatasetHandle*> latest_{nullptr};
    std::mutex mutex_;
    std::list<DatasetHandle*> order_;  // the latest first
    std::unordered_map<DatasetHandle*, std::list<DatasetHandle*>::iterator> places_;
};

}  // namespace Pyxis
