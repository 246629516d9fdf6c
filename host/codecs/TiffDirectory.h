#pragma once

#include <string>

namespace Pyxis {

/// The bytes of the GeoTIFF key directory and its two parameter tags, of the first directory of a
/// TIFF file. Empty when there are none, or when the file is not laid out as TIFF says.
std::string geoKeys(const std::string& path);

}  // namespace Pyxis
