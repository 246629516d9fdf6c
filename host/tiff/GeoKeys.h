#pragma once

#include <string>

#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// The contents of a file's GeoTIFF keys.
struct GeoKeys {
    /// All bytes that determine the coordinate system: byte order, key directory and parameters.
    /// Files with equal bytes have the same system. Empty when there are no keys, or when libtiff
    /// reads a field that this reader does not.
    std::string bytes;
    /// What tie points place: the corner of a pixel (PixelIsArea) or its centre (PixelIsPoint).
    enum class Places { Unknown, Corners, Centres };
    Places places = Places::Unknown;
    /// The EPSG code of the projected system, unless other keys could change it; else 0.
    int projectedSystem = 0;
};

/// Reads the keys of a directory; without keys, or with damaged ones, the defaults.
GeoKeys readGeoKeys(TiffFields& fields);

}  // namespace Pyxis
