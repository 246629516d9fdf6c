#pragma once

#include <string>

#include "host/file/FileHead.h"
#include "host/tiff/KnownFacts.h"

namespace Pyxis {

/// What the first directory of a TIFF file tells. A file that is not laid out as TIFF says, or that
/// tells a thing in any but the usual way, leaves that thing for GDAL to find out.
KnownFacts tiffFacts(const std::string& path, const FileHead& head);

}  // namespace Pyxis
