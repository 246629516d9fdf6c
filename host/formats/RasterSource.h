#pragma once

#include <optional>
#include <string>

#include "host/gdal/Export.h"
#include "pyxis/FileSpecifier.h"

namespace Pyxis {

/// How GDAL itself, and every program that stands on it, gets at a frame.
struct RasterSource {
    std::string prefix;    ///< goes before the file's path to make the dataset's name
    int band = 0;          ///< from 1
    std::string dataType;  ///< of the samples, GDAL's name for it
};

/// The source of a frame; nothing when no component codec reads the file or it has no such frame.
PYXIS_CODECS_API std::optional<RasterSource> rasterSourceOf(const FileSpecifier& file, int frame);

}  // namespace Pyxis
