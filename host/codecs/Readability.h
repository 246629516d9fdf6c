#pragma once

#include <string>

#include "host/gdal/Export.h"
#include "pyxis/FileSpecifier.h"

namespace Pyxis {

/// Why no component codec reads the file, for the user: it is missing, is a directory, may not be
/// read, is of no known format, or what GDAL says about it. Empty when one does read it.
PYXIS_CODECS_API std::string whyNotReadable(const FileSpecifier& file);

/// The name of a file beside a raster that may say where it lies, but is not read; empty when there
/// is none.
PYXIS_CODECS_API std::string unreadGeoreference(const FileSpecifier& file);

}  // namespace Pyxis
