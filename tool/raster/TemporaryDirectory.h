#pragma once

#include <filesystem>

#include "tool/scene/InputFiles.h"

namespace kestms {

/// A hidden directory in which an output grows beside its destination, on the same file system.
/// The process locks it for its lifetime, so that a later run can recognise and remove what a dead
/// process left behind.
class TemporaryDirectory {
  public:
    /// Creates the directory in `parent`, and removes those there whose process is gone, unless
    /// inputs are in them. Throws std::system_error.
    TemporaryDirectory(const std::filesystem::path& parent, const InputFiles& inputs);
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    /// Removes the directory with all that is in it.
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }

    /// Removes the temporary directories of this process before it is killed. Waits for a
    /// `CommitLock`.
    static void removeAll();

    /// Blocks `removeAll` while outputs are renamed.
    class CommitLock {
      public:
        CommitLock();
        CommitLock(const CommitLock&) = delete;
        CommitLock& operator=(const CommitLock&) = delete;
        ~CommitLock();
    };

  private:
    std::filesystem::path path_;
    int lock_ = -1;
};

}  // namespace kestms
