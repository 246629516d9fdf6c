#pragma once

#include <string>

#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// What the GeoTIFF keys of a file say.
struct GeoKeys {
    /// All bytes that decide which coordinate system the file has: its byte order, the key
    /// directory and the parameters. Empty when there are no keys, or when libtiff reads a field
    /// that this reader does not: files with equal bytes have the same system.
    std::string bytes;
    /// Whether tie points are those of pixel corners (PixelIsArea), as a key says.
    bool placesAreCorners = false;
    /// The EPSG code of the projected system, if the keys say nothing that could change it; else 0.
    int projectedSystem = 0;
};

/// Reads the keys of a directory; without keys, or with damaged ones, the defaults.
GeoKeys readGeoKeys(TiffFields& fields);

}  // namespace Pyxis
