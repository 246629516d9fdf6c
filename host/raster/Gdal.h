#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/Export.h"
#include "host/file/FileHead.h"
#include "host/file/WorldFile.h"
#include "host/raster/Dataset.h"

namespace Pyxis {

/// The files that GDAL sees when it opens a file.
enum class View {
    FileAlone,  ///< the file under a private name, with nothing beside it
    Directory,  ///< for drivers that need more files, or can be told to read none
    Sources,    ///< the directory, and whatever the file names
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

/// The georeference in an auxiliary file.
struct AuxiliaryPlace {
    std::optional<GeoTransform> transform;
    std::string system;  ///< a coordinate system as GDAL writes it; empty when it names none
};

/// The layer on GDAL, a separate library that is loaded when it is first needed: loading GDAL takes
/// longer than answering most questions, which need only the first bytes of the files.
class PYXIS_CODECS_API Gdal {
  public:
    virtual ~Gdal() = default;
    /// Opens a file, or the part of it that the driver names by a prefix, for reading. GDAL writes
    /// nothing beside the file and reads only what the driver needs there. A file that names
    /// another one as its overviews is refused. The reason is GDAL's, and may be empty.
    virtual Expected<std::unique_ptr<Dataset>> open(const Opening& opening,
                                                    const std::string& prefix,
                                                    std::size_t part) const = 0;
    /// Reads the georeference from the text of an auxiliary file; empty for another text.
    virtual AuxiliaryPlace auxiliaryPlaceIn(const std::string& text) const = 0;
    /// The coordinate system that a text describes; without a text of its own if it describes none.
    virtual CoordinateSystem systemIn(const std::string& text) const = 0;
    /// The head of a file that has one of GDAL's `/vsi` names.
    virtual Expected<FileHead> readHead(const std::string& path, std::size_t most) const = 0;
    /// The paths of the files in an archive.
    virtual Expected<std::vector<std::string>> listArchive(const std::string& path) const = 0;
    virtual std::optional<std::string> option(const char* name) const = 0;

    /// Loads the layer at the first call; it stays loaded. After a failure the next call tries
    /// again.
    static Expected<const Gdal*> load();
};

/// Reads the head of a file that has one of GDAL's `/vsi` names. Loads GDAL.
Expected<FileHead> readHeadByGdal(const std::string& path, std::size_t most);

/// A GDAL option from the process or its environment. Does not load GDAL.
std::optional<std::string> gdalOption(const char* name);

}  // namespace Pyxis
