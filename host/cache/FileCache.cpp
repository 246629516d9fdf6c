#include "host/cache/FileCache.h"

#include <atomic>
#include <iterator>
#include <utility>

#include "host/formats/Formats.h"
#include "host/raster/HandlePool.h"

namespace Pyxis {
namespace {

/// An absolute path; one that is absolute already is not copied.
class AbsolutePath {
  public:
    /// `directory` is the working directory if that does not change, else empty.
    AbsolutePath(const std::string& path, const std::string& directory)
        : made_(path.starts_with('/')               ? std::string()
                : directory.empty() || path.empty() ? absolutePath(path)
                                                    : directory + path),
          path_(path.starts_with('/') ? path : made_) {}
    const std::string& operator*() const { return path_; }

  private:
    std::string made_;
    const std::string& path_;
};

const char* whyNoFormat(std::string_view head) {
    return head.empty()                   ? "the file is empty"
           : head.starts_with("\x1F\x8B") ? "compressed with gzip; unpack it"
                                          : "no known raster format";
}

/// The operation of this thread; 0 for none.
thread_local std::uint64_t currentOperation = 0;

}  // namespace

FileCache::FileCache(FileChanges changes)
    : changes_(changes), directory_(changes == FileChanges::Ignore ? absolutePath(".") : "") {
    if (!directory_.empty()) {
        directory_.pop_back();  // the dot
    }
}

std::uint64_t FileCache::beginOperation() {
    static std::atomic<std::uint64_t> last = 0;
    const std::uint64_t before = currentOperation;
    currentOperation = before != 0 ? before : ++last;
    return before;
}

void FileCache::endOperation(std::uint64_t before) {
    currentOperation = before;
}

Expected<RasterPointer> FileCache::open(const Format& format, const std::string& path) {
    const AbsolutePath absolute(path, directory_);
    if (const auto known = find(*absolute)) {
        if (std::string_view(known->first->driver) != format.driver) {
            return notOf(format);
        }
        return known->second;
    }
    Expected<FileHead> head = takeHead(*absolute);
    if (!head || !format.recognise(head->bytes, *absolute)) {
        const Refusal refusal = head ? notOf(format) : head.refusal();
        keepHead(*absolute, std::move(head));
        return refusal;
    }
    return load(format, {path, *absolute, std::move(*head)});
}

Expected<RasterPointer> FileCache::open(const std::string& path) {
    const AbsolutePath absolute(path, directory_);
    if (const auto known = find(*absolute)) {
        return known->second;
    }
    Expected<FileHead> head = takeHead(*absolute);
    const Format* format = head ? formatOf(head->bytes, *absolute) : nullptr;
    if (format == nullptr) {
        const Refusal refusal =
            head ? Refusal{Refusal::Kind::OtherFormat, whyNoFormat(head->bytes)} : head.refusal();
        keepHead(*absolute, std::move(head));
        return refusal;
    }
    return load(*format, {path, *absolute, std::move(*head)});
}

bool FileCache::isFresh(std::uint64_t operation) const {
    return changes_ == FileChanges::Ignore ||
           (currentOperation != 0 && operation == currentOperation);
}

Expected<FileHead> FileCache::takeHead(const std::string& absolutePath) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (lastHead_ && lastHead_->absolutePath == absolutePath && isFresh(lastHead_->operation)) {
            Expected<FileHead> head = std::move(lastHead_->head);
            lastHead_.reset();
            return head;
        }
    }
    Expected<FileHead> head = readHead(absolutePath);
    if (!head && head.refusal().kind == Refusal::Kind::Exhausted &&
        HandlePool::instance().makeRoom()) {
        head = readHead(absolutePath);
    }
    return head;
}

void FileCache::keepHead(const std::string& absolutePath, Expected<FileHead> head) {
    const std::lock_guard<std::mutex> lock(mutex_);
    lastHead_ = LastHead{absolutePath, std::move(head), currentOperation};
}

std::optional<std::pair<const Format*, Expected<RasterPointer>>> FileCache::find(
    std::string_view absolutePath) {
    std::list<Entry> changed;  // outlives the lock: closing takes a while
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = places_.find(absolutePath);
    if (place == places_.end()) {
        return std::nullopt;
    }
    Entry& entry = *place->second;
    if (isFresh(entry.lookedAt) || !(*entry.file)->handle().hasChanged()) {
        entry.lookedAt = currentOperation;
        files_.splice(files_.begin(), files_, place->second);
        return std::pair(entry.format, entry.file);
    }
    changed.splice(changed.begin(), files_, place->second);
    places_.erase(place);
    return std::nullopt;
}

bool FileCache::mayBeKept(const Format& format, const Expected<RasterPointer>& file) const {
    return format.mayBeKept && (changes_ == FileChanges::Ignore
                                    ? file || file.refusal().kind != Refusal::Kind::Exhausted
                                    : file && (*file)->handle().isSettled());
}

Expected<RasterPointer> FileCache::load(const Format& format, SourceFile source) {
    Expected<RasterPointer> file = loadRaster(format, source);
    if (!mayBeKept(format, file)) {
        keepHead(source.absolutePath, std::move(source.head));
        return file;
    }
    std::list<Entry> own;
    own.push_back({std::move(source.absolutePath), &format, file, currentOperation});
    std::list<Entry> forgotten;  // outlives the lock
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto [place, added] = places_.emplace(own.front().absolutePath, own.begin());
    if (!added) {
        return place->second->file;  // another thread was faster
    }
    files_.splice(files_.begin(), own);
    if (files_.size() > mostFiles()) {
        places_.erase(files_.back().absolutePath);
        forgotten.splice(forgotten.begin(), files_, std::prev(files_.end()));
    }
    return file;
}

}  // namespace Pyxis
