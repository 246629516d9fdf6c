#pragma once

#include <string>

#include "host/tiff/TiffFields.h"

namespace Pyxis {

/// What a TIFF file's GeoTIFF keys tell.
struct GeoKeys {
    /// All bytes that decide which coordinate system the file has: its byte order, the key
    /// directory and the parameters. Empty when there are no keys, or when libtiff reads a field
    /// that this reader does not: files with equal bytes have the same system.
    std::string bytes;
    /// Whether places are said to be those of pixel corners, not of pixel centres.
    bool placesAreCorners = false;
    /// The EPSG code of the projected system when the keys say that and nothing that could change
    /// it; else 0.
    int projectedSystem = 0;
};

GeoKeys readGeoKeys(TiffFields& fields);

}  // namespace Pyxis
