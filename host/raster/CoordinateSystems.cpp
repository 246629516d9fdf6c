#include "host/raster/CoordinateSystems.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/Text.h"
#include "host/raster/Gdal.h"
#include "host/raster/RegisteredSystem.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

using SystemPointer = std::shared_ptr<const CoordinateSystem>;

SystemPointer unknownSystem() {
    return std::make_shared<CoordinateSystem>(CoordinateSystem{toWideBuffer(""), 0});
}

/// Null when the file is gone.
SystemPointer systemOf(const PlaceFacts& place, const DatasetOpener& open) {
    if (!place.systemText.empty()) {
        const Expected<const Gdal*> gdal = Gdal::load();
        return gdal ? std::make_shared<CoordinateSystem>((*gdal)->systemIn(place.systemText))
                    : nullptr;
    }
    if (std::optional<CoordinateSystem> registered = registeredSystem(place.projectedSystem)) {
        return std::make_shared<CoordinateSystem>(std::move(*registered));
    }
    const Dataset* dataset = open();
    return dataset != nullptr ? std::make_shared<CoordinateSystem>(dataset->coordinateSystem())
                              : nullptr;
}

/// The systems of the keys seen so far. Sets have one or two; at the limit the cache is cleared.
class KnownSystems {
  public:
    static KnownSystems& instance() {
        static auto* const systems = new KnownSystems;
        return *systems;
    }

    /// Only the first caller with a key computes the system; the others do not wait, as they have
    /// files to open meanwhile. Not valid when the computation fails; those who did not wait then
    /// have an unknown system, and the next caller tries again.
    template <typename Work>
    SharedSystem systemOf(const std::string& key, const Work& work) {
        const SystemPointer unknown = unknownSystem();
        std::promise<SystemPointer> promise;
        SharedSystem own = promise.get_future().share();
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (systems_.size() >= kMostSystems && systems_.count(key) == 0) {
                systems_.clear();
            }
            const auto [place, added] = systems_.emplace(key, own);
            if (!added) {
                return place->second;
            }
        }
        const SystemPointer found = answerOr(SystemPointer(), work);
        promise.set_value(found ? found : unknown);
        if (found) {
            return own;
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        systems_.erase(key);
        return {};
    }

  private:
    static constexpr std::size_t kMostSystems = 64;

    std::mutex mutex_;
    std::unordered_map<std::string, SharedSystem> systems_;
};

}  // namespace

SharedSystem coordinateSystemOf(const PlaceFacts& place, const DatasetOpener& open) {
    const auto work = [&] { return systemOf(place, open); };
    if (!place.systemKey.empty()) {
        return KnownSystems::instance().systemOf(place.systemKey, work);
    }
    SystemPointer found = work();
    if (!found) {
        return {};
    }
    std::promise<SystemPointer> promise;
    promise.set_value(std::move(found));
    return promise.get_future().share();
}

}  // namespace Pyxis
