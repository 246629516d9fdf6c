#pragma once

#include <string>

#include "host/gdal/DatasetHandle.h"

namespace Pyxis {

/// Opens the file `path`, or the part of it that the driver names by a prefix, for reading with
/// that driver only. GDAL writes nothing beside the file and reads nothing there. A file that names
/// another one as its overviews is refused; `mayNameOverviews` is false where it cannot. Null on
/// failure, with GDAL's words reported as its error.
DatasetPointer openForReading(const char* driver, const std::string& prefix,
                              const std::string& path, bool mayNameOverviews);

}  // namespace Pyxis
