#pragma once

#include <string>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/PathPolicy.h"
#include "host/gdal/Export.h"
#include "pyxis/FindFileInterface.h"

// Where rasters lie, for programs that look for them: in folders, in archives, on the network.

namespace Pyxis {

/// What a path leads to.
PYXIS_CODECS_API PathKind kindOfPath(const std::string& path);

/// GDAL's name for what lies in an archive, with the archive's path from the root on.
PYXIS_CODECS_API std::string absoluteInside(const std::string& path);

/// GDAL's name for the inside of an archive with that path: "/vsizip/{/home/me/a.zip}"; empty when
/// its name is not one of an archive that is read (.zip, .tar, .tar.gz, .tgz).
PYXIS_CODECS_API std::string insideOfArchive(const std::string& path);

/// The paths of the files in an archive or a folder of one, by GDAL's name for it, and in the
/// folders below. Names that lead out of it are passed over. Refused when it is damaged, out of
/// proportion, or holds too many files (docs/limits.md).
PYXIS_CODECS_API Expected<std::vector<std::string>> filesInArchive(const std::string& inside);

/// Whether a file's name promises a raster of a component format.
PYXIS_CODECS_API bool isNamedLikeRaster(const std::string& path);

/// Looks for files in archives, too, as the policy allows.
class PYXIS_CODECS_API ArchiveFileFinder final : public FindFileInterface {
  public:
    explicit ArchiveFileFinder(FindFileInterface& others) : others_(others) {}
    bool findFile(const ImageFormatCodec* codec, const FileSpecifier& base,
                  const FileSpecifier& nameToLookFor, FileSpecifier& found) override;

  private:
    FindFileInterface& others_;  ///< for plain files
};

}  // namespace Pyxis
