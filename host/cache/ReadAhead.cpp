#include "host/cache/ReadAhead.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "host/cache/FileCache.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

/// Starting a thread takes as long as opening a few files.
constexpr std::size_t kFilesForThread = 16;
/// More threads would only wait for disk and memory.
constexpr std::size_t kMostThreads = 4;

}  // namespace

ReadAhead::ReadAhead(std::shared_ptr<FileCache> cache, std::vector<std::string> paths,
                     std::function<bool()> stop)
    : cache_(std::move(cache)),
      paths_(std::move(paths)),
      stop_(std::move(stop)),
      count_(std::min(paths_.size(), cache_->mostFiles())) {
    const std::size_t threads =
        std::min<std::size_t>({count_ / kFilesForThread,
                               std::max(std::thread::hardware_concurrency(), 1U), kMostThreads});
    if (threads < 2) {
        return;
    }
    helpers_.reserve(threads - 1);
    try {
        // The first file most likely has the coordinate system of all. A helper opens it, so that
        // the caller need not wait for it.
        helpers_.emplace_back([this] {
            open(0);
            openNextFiles();
        });
        while (helpers_.size() < threads - 1) {
            helpers_.emplace_back([this] { openNextFiles(); });
        }
    } catch (const std::exception&) {
        // Fewer threads do the work.
    }
    openNextFiles();
}

ReadAhead::~ReadAhead() {
    next_ = count_;
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

void ReadAhead::open(std::size_t at) {
    answerOr(false, [&] {
        return static_cast<bool>(cache_->open(paths_[at]));  // the codecs report refusals
    });
}

void ReadAhead::openNextFiles() {
    for (std::size_t at = next_++; at < count_ && !stop_(); at = next_++) {
        open(at);
    }
}

}  // namespace Pyxis
