#pragma once

#include <string>

namespace Pyxis {

/// The file in which GDAL keeps what it learns of a raster: "a.tif.aux.xml".
std::string auxiliaryFileOf(const std::string& path);

/// The text of a raster's auxiliary file where it may say where the raster lies; else empty, so
/// that nobody has to parse statistics. Only a regular file of at most 16 MiB counts. A file on the
/// network has none: each would be asked for in vain.
std::string readAuxiliaryFile(const std::string& path);

}  // namespace Pyxis
