#include "host/raster/Gdal.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdlib>

#include "host/raster/Module.h"

namespace Pyxis {
namespace {

/// Only a program that uses GDAL itself can have set its options other than by the environment.
bool isInProcess() {
    static const bool linked = dlsym(RTLD_DEFAULT, "CPLGetConfigOption") != nullptr;
    static std::atomic<bool> loaded{false};
    static std::atomic<unsigned long long> loads{0};  ///< when it was last looked for
    if (const unsigned long long now = numberOfLoads(); !linked && !loaded && loads != now) {
        loaded = isLoaded(PYXIS_GDAL_LIBRARY);
        loads = now;
    }
    return linked || loaded;
}

}  // namespace

Expected<const Gdal*> Gdal::load() {
    static std::atomic<const Gdal*> loaded{nullptr};
    if (const Gdal* gdal = loaded) {
        return gdal;
    }
    Expected<void*> entry = functionIn(PYXIS_GDAL_LIBRARY, "pyxisGdal");
    if (!entry) {
        return entry.refusal();
    }
    loaded = reinterpret_cast<const Gdal* (*)()>(*entry)();
    return loaded.load();
}

Expected<FileHead> readHeadByGdal(const std::string& path, std::size_t most) {
    const Expected<const Gdal*> gdal = Gdal::load();
    return gdal ? (*gdal)->readHead(path, most) : gdal.refusal();
}

std::optional<std::string> gdalOption(const char* name) {
    if (isInProcess()) {
        const Expected<const Gdal*> gdal = Gdal::load();
        return gdal ? (*gdal)->option(name) : std::nullopt;
    }
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace Pyxis
