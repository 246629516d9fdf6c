#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/file/FileHead.h"
#include "host/raster/Dataset.h"
#include "host/raster/Gdal.h"

namespace Pyxis {

/// GDAL's datasets of one file. They close when too many are open in the process, and reopen when
/// used, unless the file has changed meanwhile. Two threads may not use a dataset at once, so every
/// use goes through `Use`.
class DatasetHandle {
  public:
    DatasetHandle(Opening opening, const FileState& state);
    DatasetHandle(const DatasetHandle&) = delete;
    DatasetHandle& operator=(const DatasetHandle&) = delete;
    ~DatasetHandle();

    const char* driver() const { return opening_.driver; }
    const std::string& path() const { return opening_.path; }
    View view() const { return opening_.view; }
    /// Whether the file has changed since it was first opened.
    bool hasChanged() const;
    /// Whether a change is sure to be noticed.
    bool isSettled() const { return stamp_.settled(); }

    /// Holds the datasets for this thread, open.
    class Use {
      public:
        explicit Use(DatasetHandle& handle) : Use(handle, std::unique_lock(handle.mutex_)) {}
        /// With the lock of `tryLock`.
        Use(DatasetHandle& handle, std::unique_lock<std::mutex> lock)
            : handle_(handle), lock_(std::move(lock)) {}
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        /// Null when the file could not be opened again or has changed.
        const Dataset* dataset(std::size_t part) noexcept;

      private:
        DatasetHandle& handle_;
        std::unique_lock<std::mutex> lock_;
    };

    /// Owns the lock unless another thread is using the datasets.
    std::unique_lock<std::mutex> tryLock() { return std::unique_lock(mutex_, std::try_to_lock); }
    /// Another handle on the same file, with its own datasets, which open when used. Only after the
    /// file was loaded.
    std::unique_ptr<DatasetHandle> another() const;

    /// Closes the datasets unless somebody is using them; returns whether they are closed.
    bool closeIfIdle();

    /// Whether there was an auxiliary file when the file was first opened.
    bool mayHaveAuxiliaryFile() const;

    // While the file is loaded, by one thread.

    /// The file names no other file as overviews, so GDAL need not be asked.
    void setNamesNoOverviews() { opening_.mayNameOverviews = false; }
    /// GDAL also needs this file of the same directory.
    void showToo(std::string path) { opening_.companions.push_back(std::move(path)); }
    /// From now on a change of the world files counts as a change of the file.
    void watchWorldFiles();
    /// Opens the file itself, which is part 0. The dataset stays the handle's.
    Expected<const Dataset*> open();
    /// Opens another dataset of the file by the driver's own name for it.
    Expected<const Dataset*> openPart(const std::string& prefix);
    const Dataset& opened(std::size_t part) const { return *datasets_.at(part); }
    bool isOpen() const { return !datasets_.empty(); }
    /// Adds this file to the pool of open files.
    void loaded();

    /// The prefix of the path in the driver's name for a part; empty for the file itself.
    const std::string& prefix(std::size_t part) const { return prefixes_.at(part); }

  private:
    DatasetHandle(Opening opening, FileStamp stamp, std::vector<std::string> prefixes);

    Expected<const Dataset*> keep(Expected<std::unique_ptr<Dataset>> dataset);
    Expected<std::unique_ptr<Dataset>> openDataset(const std::string& prefix,
                                                   std::size_t part) const;
    bool openAgain();

    Opening opening_;
    FileStamp stamp_;
    std::vector<std::string> prefixes_;  // one a part

    std::mutex mutex_;
    std::vector<std::unique_ptr<Dataset>> datasets_;  // of all parts, or of none
};

}  // namespace Pyxis
