#include "host/gdal/CoordinateSystems.h"

#include <cpl_conv.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/Text.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

/// The EPSG code of the system as a whole; 0 when it has none.
int epsgCode(const OGRSpatialReference& system) {
    const char* authority = system.GetAuthorityName(nullptr);
    const char* code = system.GetAuthorityCode(nullptr);
    if (authority == nullptr || code == nullptr || !EQUAL(authority, "EPSG")) {
        return 0;
    }
    return static_cast<int>(std::clamp(std::strtol(code, nullptr, 10), 0L, 0x7fffffffL));
}

/// Formats that describe a system without a code or a name still mean a registered one.
OGRSpatialReference identified(const OGRSpatialReference& system) {
    OGRSpatialReference known(system);
    if (epsgCode(system) != 0 || known.AutoIdentifyEPSG() != OGRERR_NONE ||
        known.importFromEPSG(epsgCode(known)) != OGRERR_NONE) {
        return system;
    }
    return known;
}

/// One form for all, so that equal systems give equal texts.
std::string wktOf(const OGRSpatialReference& system) {
    const char* const options[] = {"FORMAT=WKT2_2018", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    std::string wkt;
    if (system.exportToWkt(&text, options) == OGRERR_NONE && text != nullptr) {
        wkt = text;
    }
    CPLFree(text);
    return wkt;
}

using SystemPointer = std::shared_ptr<const CoordinateSystem>;

SystemPointer described(const OGRSpatialReference& system) {
    return std::make_shared<CoordinateSystem>(
        CoordinateSystem{toWideBuffer(wktOf(system)), epsgCode(system)});
}

SystemPointer unknownSystem() {
    return std::make_shared<CoordinateSystem>(CoordinateSystem{toWideBuffer(""), 0});
}

/// GDAL keeps the system separately when it treats the tie points of a file as ground control
/// points, as it does when the georeference is in a world file that it does not see.
SystemPointer systemOf(GDALDataset& dataset) {
    const OGRSpatialReference* system =
        dataset.GetGCPCount() > 0 ? dataset.GetGCPSpatialRef() : dataset.GetSpatialRef();
    return system != nullptr && !system->IsEmpty() ? described(identified(*system))
                                                   : unknownSystem();
}

/// A registered projected system in metres; null for another code. This takes half the time of
/// reading it from a file. GDAL keeps the horizontal part of a compound system.
SystemPointer registeredSystem(int code) {
    OGRSpatialReference system;
    return code != 0 && system.importFromEPSG(code) == OGRERR_NONE && system.IsProjected() != 0 &&
                   system.IsCompound() == 0 && system.GetLinearUnits() == 1.0
               ? described(system)
               : nullptr;
}

/// A system from its text. Some texts that GDAL accepts name a file or an address.
SystemPointer systemIn(const std::string& text) {
    OGRSpatialReference system;
    return system.SetFromUserInput(text.c_str(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) ==
                   OGRERR_NONE
               ? described(identified(system))
               : unknownSystem();
}

/// Null when the file is gone.
SystemPointer systemOf(const PlaceFacts& place, const DatasetOpener& open) {
    if (!place.systemText.empty()) {
        return systemIn(place.systemText);
    }
    if (SystemPointer registered = registeredSystem(place.projectedSystem)) {
        return registered;
    }
    GDALDataset* dataset = open();
    return dataset != nullptr ? systemOf(*dataset) : nullptr;
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
