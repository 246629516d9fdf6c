#pragma once

#include <gdal_priv.h>

#include <string>

namespace Pyxis {

struct Opening {
    bool withWorldFile = false;
    bool mayNameOverviews = true;  ///< whether the file may name another one as its overviews
};

/// Opens `name`, which is the file `path` or the driver's name for a part of it, for reading with
/// that driver only. GDAL writes nothing beside the file, and looks at nothing there but a world
/// file where that is wanted. Null on failure, with GDAL's words reported as its error.
GDALDatasetUniquePtr openForReading(const char* driver, const std::string& name,
                                    const std::string& path, const Opening& opening);

}  // namespace Pyxis
