#include "host/cache/FileCache.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "host/cache/HandlePool.h"
#include "host/formats/GdalFormat.h"
#include "host/gdal/OpenedFile.h"

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

std::shared_ptr<OpenedFile> FileCache::open(const GdalFormat& format, const std::string& path,
                                            std::string& why) {
    const bool isAbsolute = path.starts_with('/');
    std::shared_ptr<OpenedFile> file =
        isAbsolute ? find({format.driver(), path}) : find({format.driver(), absolutePath(path)});
    if (file) {
        return file;
    }
    file = OpenedFile::open(format, path, why);
    if (!file && descriptorsExhausted()) {
        HandlePool::instance().closeIdle();
        file = OpenedFile::open(format, path, why);
    }
    if (file && format.mayBeKept() && (changes_ == Changes::Ignore || file->isSettled())) {
        return keep(format.driver(), file);
    }
    return file;
}

std::shared_ptr<OpenedFile> FileCache::find(const Key& key) {
    std::shared_ptr<OpenedFile> changed;  // outlives the lock: closing takes a while
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = places_.find(key);
    if (place == places_.end()) {
        return nullptr;
    }
    if (changes_ == Changes::Ignore || !place->second->file->hasChanged()) {
        entries_.splice(entries_.begin(), entries_, place->second);
        return place->second->file;
    }
    changed = place->second->file;
    entries_.erase(place->second);
    places_.erase(place);
    return nullptr;
}

std::shared_ptr<OpenedFile> FileCache::keep(std::string_view driver,
                                            const std::shared_ptr<OpenedFile>& file) {
    const Key key{driver, file->absolutePath()};
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = places_.find(key);
    if (place != places_.end()) {
        return place->second->file;  // another thread was faster
    }
    entries_.push_front({key, file});
    places_.emplace(key, entries_.begin());
    if (entries_.size() > kMostFiles) {
        places_.erase(entries_.back().key);
        entries_.pop_back();
    }
    return file;
}

}  // namespace Pyxis
