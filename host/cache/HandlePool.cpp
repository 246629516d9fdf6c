#include "host/cache/HandlePool.h"

#include <sys/resource.h>

#include <algorithm>
#include <iterator>

#include "host/gdal/OpenedFile.h"

namespace Pyxis {

HandlePool& HandlePool::instance() {
    // Never destroyed: images that nobody deletes may still be there when the process ends.
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

void HandlePool::used(OpenedFile& file) {
    if (latest_ == &file) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    latest_ = &file;
    const auto place = places_.find(&file);
    if (place != places_.end()) {
        order_.splice(order_.begin(), order_, place->second);
        return;
    }
    order_.push_front(&file);
    places_.emplace(&file, order_.begin());
    static const std::size_t most = limit();
    closeOldest(most, &file);
}

void HandlePool::forget(OpenedFile& file) {
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

void HandlePool::closeIdle() {
    const std::lock_guard<std::mutex> lock(mutex_);
    closeOldest(0, nullptr);
}

void HandlePool::closeOldest(std::size_t limit, const OpenedFile* except) {
    for (auto at = order_.end(); at != order_.begin() && order_.size() > limit;) {
        OpenedFile* file = *--at;
        if (latest_ == file) {
            latest_ = nullptr;  // before the file is free for others to open again
        }
        // A file that another thread is using stays; waiting for it here could lock up both.
        if (file != except && file->closeIfIdle()) {
            places_.erase(file);
            at = order_.erase(at);
        }
    }
}

}  // namespace Pyxis
