#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/Export.h"
#include "host/file/FileHead.h"
#include "host/file/PathPolicy.h"
#include "pyxis/FindFileInterface.h"

// Places that may hold rasters: folders, archives, the network. What depends on the path policy is
// defined in this library alone: libPyxisGdal has a copy of host/file, whose policy nobody sets.

namespace Pyxis {

/// GDAL's name for the inside of an archive: "/vsizip/{/home/me/a.zip}"; empty when the extension
/// is not one of the archives that are read (.zip, .tar, .tar.gz, .tgz).
PYXIS_CODECS_API std::string insideOfArchive(const std::string& path);

/// The paths of the files in an archive or a folder of one, by GDAL's name for it, and in the
/// folders below. Skips names that lead out of it. Refused when it is damaged, out of proportion,
/// or has too many files (docs/limits.md).
PYXIS_CODECS_API Expected<std::vector<std::string>> filesInArchive(const std::string& inside);

/// The whole content of a file beside a raster, in an archive as well. Refused when there is none
/// or it has more than `most` bytes, and on the network, where each would cost a request in vain.
PYXIS_CODECS_API Expected<std::string> contentOfSideFile(const std::string& path, std::size_t most);

/// Whether there is such a file beside a raster, of any size.
PYXIS_CODECS_API bool isSideFile(const std::string& path);

/// Whether a file's extension is that of a component format.
PYXIS_CODECS_API bool isNamedLikeRaster(const std::string& path);

/// The names of files beside a raster that place or describe it, whether they are there or not.
PYXIS_CODECS_API std::vector<std::string> namesBeside(const std::string& raster);

/// Also looks for files in archives, as the policy allows.
class PYXIS_CODECS_API ArchiveFileFinder final : public FindFileInterface {
  public:
    explicit ArchiveFileFinder(FindFileInterface& others) : others_(others) {}
    bool findFile(const ImageFormatCodec* codec, const FileSpecifier& base,
                  const FileSpecifier& nameToLookFor, FileSpecifier& found) override;

  private:
    FindFileInterface& others_;  ///< for plain files
};

}  // namespace Pyxis
