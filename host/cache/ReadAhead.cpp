#include "host/cache/ReadAhead.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "host/cache/FileCache.h"
#include "host/file/PathPolicy.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

/// Starting a thread takes as long as opening a few files.
constexpr std::size_t kFilesForThread = 16;
/// More threads would only wait for disk and memory.
constexpr std::size_t kMostThreads = 4;

std::size_t threadsFor(std::size_t files) {
    const std::size_t wanted = std::min(files / kFilesForThread, kMostThreads);
    // Counting the processors means reading a file, which takes as long as opening one.
    return wanted < 2 ? wanted : std::min<std::size_t>(wanted, std::thread::hardware_concurrency());
}

}  // namespace

ReadAhead::ReadAhead(std::shared_ptr<FileCache> cache, std::vector<std::string> paths,
                     std::function<bool()> stop)
    : cache_(std::move(cache)),
      paths_(std::move(paths)),
      stop_(std::move(stop)),
      count_(std::min(paths_.size(), cache_->mostFiles())) {
    const std::size_t threads = threadsFor(count_);
    if (threads < 2) {
        return;
    }
    helpers_.reserve(threads - 1);
    try {
        while (helpers_.size() < threads - 1) {
            helpers_.emplace_back([this, allowed = allowsVirtualRasters()] {
                const WithoutVirtualRasters asCaller(!allowed);
                openNextFiles();
            });
        }
    } catch (const std::exception&) {
        // Fewer threads do the work.
    }
}

ReadAhead::~ReadAhead() {
    next_ = count_;
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

void ReadAhead::help() {
    if (!helpers_.empty()) {
        openNextFiles();
    }
}

void ReadAhead::openNextFiles() {
    for (std::size_t at = next_++; at < count_ && !stop_(); at = next_++) {
        answerOr(false, [&] {
            return static_cast<bool>(cache_->open(paths_[at]));  // the codecs report refusals
        });
    }
}

}  // namespace Pyxis
