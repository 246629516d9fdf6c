#pragma once

#include <string>

#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// What a TIFF file's GeoTIFF keys tell.
struct GeoKeys {
    /// The bytes of the key directory and its parameters, which decide on the coordinate system;
    /// empty when there are none.
    std::string bytes;
    /// Whether places are said to be those of pixel corners, not of pixel centres.
    bool placesAreCorners = false;
    /// The EPSG code of the projected system when the keys say that and nothing that could change
    /// it; else 0.
    int projectedSystem = 0;
};

GeoKeys readGeoKeys(TiffFields& fields);

}  // namespace Pyxis
