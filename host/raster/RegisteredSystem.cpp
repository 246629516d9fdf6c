#include "host/raster/RegisteredSystem.h"

#include <string>

#include "host/Text.h"
#include "host/raster/Gdal.h"
#include "host/raster/Module.h"
#include "host/systems/ProjectedSystem.h"

namespace Pyxis {

std::optional<CoordinateSystem> registeredSystem(int code) {
    // With these options GDAL describes systems differently.
    if (code == 0 || gdalOption("OSR_USE_NON_DEPRECATED") ||
        gdalOption("OSR_ADD_TOWGS84_ON_IMPORT_FROM_EPSG")) {
        return std::nullopt;
    }
    const Expected<void*> found = functionIn(PYXIS_SYSTEMS_LIBRARY, "pyxisProjectedSystem");
    if (!found) {
        return std::nullopt;
    }
    std::string wkt;
    const int registered = reinterpret_cast<decltype(&pyxisProjectedSystem)>(*found)(code, wkt);
    return registered != 0 ? std::optional(CoordinateSystem{toWideBuffer(wkt), registered})
                           : std::nullopt;
}

}  // namespace Pyxis
