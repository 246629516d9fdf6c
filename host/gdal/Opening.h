#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/gdal/Export.h"

class GDALDataset;

namespace Pyxis {

class PrivateFiles;

/// What GDAL sees when it opens a file.
enum class View {
    FileAlone,  ///< the file under a name of its own, with nothing beside it
    Directory,  ///< for drivers that need more files, or can be told to look at none
};

/// How a file is opened.
struct Opening {
    const char* driver;  ///< the only one of GDAL's that may open it; outlives this
    std::string path;    ///< from the root on
    View view = View::FileAlone;
    bool mayNameOverviews = true;  ///< whether it may name another file as its overviews
    /// Files of the same directory that GDAL sees beside it, where it sees the file alone.
    std::vector<std::string> companions = {};
};

struct CloseDataset {
    std::shared_ptr<PrivateFiles> files;  ///< under whose name it is open; may be null

    void operator()(GDALDataset* dataset) const;
};
using DatasetPointer = std::unique_ptr<GDALDataset, CloseDataset>;

/// Makes GDAL know a driver by its short name, which must be done before it opens files with it.
PYXIS_CODECS_API void registerDriver(const char* driver);

/// Opens a file, or the part of it that the driver names by a prefix, for reading. GDAL writes
/// nothing beside the file and reads nothing there but what the driver needs. A file that names
/// another one as its overviews is refused. Null on failure, with GDAL's words reported as its
/// error.
DatasetPointer openForReading(const Opening& opening, const std::string& prefix);

}  // namespace Pyxis
