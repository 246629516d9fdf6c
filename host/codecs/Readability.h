#pragma once

#include <string>

#include "host/file/Export.h"
#include "pyxis/FileSpecifier.h"

namespace Pyxis {

/// Why no component codec reads the file, for the user: it is missing, a directory, not permitted,
/// of no known format, or GDAL's message. Empty when a codec reads it.
PYXIS_CODECS_API std::string whyNotReadable(const FileSpecifier& file);

/// The name of a file beside a raster that may hold its georeference, but is not read; empty when
/// there is none.
PYXIS_CODECS_API std::string unreadGeoreference(const FileSpecifier& file);

}  // namespace Pyxis
