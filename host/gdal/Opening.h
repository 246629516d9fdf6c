#pragma once

#include <memory>
#include <string>

#include "host/file/Export.h"
#include "host/raster/Gdal.h"

class GDALDataset;

namespace Pyxis {

class PrivateFiles;

struct CloseDataset {
    std::shared_ptr<PrivateFiles> files;  ///< under whose name it is open; may be null

    void operator()(GDALDataset* dataset) const;
};
using DatasetPointer = std::unique_ptr<GDALDataset, CloseDataset>;

/// Registers a GDAL driver by its short name; required before it opens files.
PYXIS_CODECS_API void registerDriver(const char* driver);

/// Opens a file, or the part of it that the driver names by a prefix, for reading. GDAL writes
/// nothing beside the file and reads only what the driver needs there. A file that names another
/// one as its overviews is refused. Null on failure, with the reason as GDAL's error.
DatasetPointer openForReading(const Opening& opening, const std::string& prefix);

}  // namespace Pyxis
