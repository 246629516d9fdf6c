#pragma once

#include <string>

namespace Pyxis {

/// The name of GDAL's auxiliary file of a raster: "a.tif.aux.xml".
std::string auxiliaryFileOf(const std::string& path);

/// The text of a raster's auxiliary file if it may hold a georeference; else empty, so that nobody
/// parses mere statistics. Only a regular file of at most 16 MiB counts. A file on the network has
/// none: each would cost a request in vain.
std::string readAuxiliaryFile(const std::string& path);

}  // namespace Pyxis
