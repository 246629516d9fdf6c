#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/gdal/Export.h"

class GDALDataset;

namespace Pyxis {

class PrivateFiles;

/// The files that GDAL sees when it opens a file.
enum class View {
    FileAlone,  ///< the file under a private name, with nothing beside it
    Directory,  ///< for drivers that need more files, or can be told to read none
};

/// How a file is opened.
struct Opening {
    const char* driver;  ///< the only one of GDAL's that may open it; outlives this
    std::string path;    ///< absolute
    View view = View::FileAlone;
    bool mayNameOverviews = true;  ///< whether it may name another file as its overviews
    /// Files of the same directory that GDAL also sees, with View::FileAlone.
    std::vector<std::string> companions = {};
};

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
