#include "host/raster/RasterFile.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace Pyxis {
namespace {

/// The most handles of a file besides the first one; each may hold descriptors and memory.
std::size_t mostSpares() {
    constexpr unsigned kMostProcessors = 16;
    static const unsigned processors = std::thread::hardware_concurrency();
    return std::clamp(processors, 1U, kMostProcessors) - 1;
}

}  // namespace

RasterFile::RasterFile(RasterFacts facts, std::unique_ptr<DatasetHandle> handle)
    : facts_(std::move(facts)), handle_(std::move(handle)) {}

DatasetHandle::Use RasterFile::use() {
    if (auto lock = handle_->tryLock()) {
        return {*handle_, std::move(lock)};
    }
    {
        const std::lock_guard<std::mutex> guard(spareMutex_);
        if (spares_.size() < mostSpares()) {
            spares_.push_back(handle_->another());
        }
        for (const auto& spare : spares_) {
            if (auto lock = spare->tryLock()) {
                return {*spare, std::move(lock)};
            }
        }
    }
    return DatasetHandle::Use(*handle_);
}

std::shared_ptr<const GeoFacts> RasterFile::place(int index) {
    const FrameFacts& facts = frame(index);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (places_.size() <= facts.part) {
        places_.resize(facts.part + 1);
    }
    auto& place = places_[facts.part];
    if (place) {
        return *place;
    }
    std::optional<DatasetHandle::Use> use;
    bool isGone = false;
    std::shared_ptr<const GeoFacts> read =
        readGeoFacts(facts_.place, facts.width, facts.height, [&]() -> const Dataset* {
            const Dataset* dataset = (use ? *use : use.emplace(*handle_)).dataset(facts.part);
            isGone = dataset == nullptr;
            return dataset;
        });
    if (!isGone) {  // a file that could not be opened now may be later
        place = read;
    }
    return read;
}

}  // namespace Pyxis
