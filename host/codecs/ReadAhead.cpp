#include "host/codecs/ReadAhead.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>

#include "host/codecs/FileCache.h"
#include "host/codecs/GdalFormat.h"
#include "host/codecs/Guarded.h"
#include "host/codecs/OpenedFile.h"

namespace Pyxis {
namespace {

/// Starting a thread takes as long as opening a few files.
constexpr std::size_t kFilesForThread = 16;
/// More threads than that wait for one another's disk and memory.
constexpr std::size_t kMostThreads = 4;

void openAny(FileCache& cache, const std::string& path) {
    for (const GdalFormat* format : {&tiffFormat(), &nitfFormat(), &fastFormat()}) {
        std::string why;
        if (cache.open(*format, path, why)) {
            return;
        }
    }
}

/// The threads besides the one that asks.
class Helpers {
  public:
    template <typename Work>
    Helpers(std::size_t count, const Work& work) {
        try {
            for (std::size_t i = 0; i < count; ++i) {
                threads_.emplace_back(work);
            }
        } catch (const std::system_error&) {
            // Fewer do the work.
        }
    }
    Helpers(const Helpers&) = delete;
    Helpers& operator=(const Helpers&) = delete;
    ~Helpers() {
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }

  private:
    std::vector<std::thread> threads_;
};

}  // namespace

void readAhead(FileCache& cache, const std::vector<std::string>& paths,
               const std::function<bool()>& stop) {
    const std::size_t count = std::min(paths.size(), FileCache::kMostFiles);
    const std::size_t threads = std::min<std::size_t>(
        {count / kFilesForThread, std::max(std::thread::hardware_concurrency(), 1U), kMostThreads});
    if (threads < 2) {
        return;
    }
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t at = next++; at < count && !stop(); at = next++) {
            guarded(false, [&] {
                openAny(cache, paths[at]);
                return true;
            });
        }
    };
    const Helpers helpers(threads - 1, work);
    work();
}

}  // namespace Pyxis
