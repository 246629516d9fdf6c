#include "host/raster/HandlePool.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "host/raster/DatasetHandle.h"

namespace Pyxis {
namespace {

/// Whether the process can open no more files.
bool descriptorsExhausted() {
    const int probe = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (probe >= 0) {
        close(probe);
        return false;
    }
    return errno == EMFILE || errno == ENFILE;
}

}  // namespace

HandlePool& HandlePool::instance() {
    // Never destroyed: images that nobody deletes may still exist when the process ends.
    static auto* const pool = new HandlePool;
    return *pool;
}

std::size_t HandlePool::limit() {
    constexpr std::size_t kMost = 64;
    constexpr std::size_t kLeast = 4;
    struct rlimit descriptors {};
    if (getrlimit(RLIMIT_NOFILE, &descriptors) != 0) {
        return kLeast;
    }
    return std::clamp(static_cast<std::size_t>(descriptors.rlim_cur / 4), kLeast, kMost);
}

void HandlePool::used(DatasetHandle& file) {
    if (latest_ == &file) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = places_.find(&file);
    if (place != places_.end()) {
        order_.splice(order_.begin(), order_, place->second);
    } else {
        std::list<DatasetHandle*> own = {&file};
        places_.emplace(&file,
                        own.begin());  // still the file's position after it moves to the other list
        order_.splice(order_.begin(), own);
        closeOldest(limit(), &file);
    }
    latest_ = &file;
}

void HandlePool::forget(DatasetHandle& file) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (latest_ == &file) {
        latest_ = nullptr;
    }
    const auto place = places_.find(&file);
    if (place != places_.end()) {
        order_.erase(place->second);
        places_.erase(place);
    }
}

bool HandlePool::makeRoom(const DatasetHandle* except) {
    if (!descriptorsExhausted()) {
        return false;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    closeOldest(0, except);
    return true;
}

void HandlePool::closeIdle() {
    const std::lock_guard<std::mutex> lock(mutex_);
    closeOldest(0, nullptr);
}

void HandlePool::closeOldest(std::size_t limit, const DatasetHandle* except) {
    for (auto at = order_.end(); at != order_.begin() && order_.size() > limit;) {
        DatasetHandle* file = *--at;
        if (latest_ == file) {
            latest_ = nullptr;  // before the file is free for others to open again
        }
        // Skips a file that another thread is using; waiting for it could deadlock.
        if (file != except && file->closeIfIdle()) {
            places_.erase(file);
            at = order_.erase(at);
        }
    }
}

}  // namespace Pyxis
