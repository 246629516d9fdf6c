#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/file/Export.h"
#include "pyxis/FileSpecifier.h"

namespace Pyxis {

class RasterFile;

/// How GDAL, and every program that uses it, opens a frame.
struct RasterSource {
    std::string prefix;                ///< precedes the file's path in the dataset's name
    int band = 0;                      ///< from 1
    std::string dataType;              ///< of the samples, GDAL's name for it
    std::string driver;                ///< short name of the GDAL driver that reads the file
    std::string label;                 ///< the file's own name for the band; may be empty
    bool mayHaveAuxiliaryFile = true;  ///< had one when it was opened
    /// Absolute paths of all files that the driver needs, the file itself first; see
    /// `PrivateFiles`. Empty for a virtual raster, which names other files itself.
    std::vector<std::string> files;
};

/// Codecs that know the sources of their frames.
class RasterSources {
  public:
    virtual ~RasterSources();
    /// Nothing when the codec does not read the file or it has no such frame.
    virtual std::optional<RasterSource> source(const FileSpecifier& file, int frame) const = 0;
};

/// Nothing when the file has no such frame.
std::optional<RasterSource> sourceOf(const RasterFile& file, int frame);

/// The source of a frame, from the registered codec that reads the file, which still has a recently
/// used file open; nothing when no component codec reads it or it has no such frame.
PYXIS_CODECS_API std::optional<RasterSource> rasterSourceOf(const std::string& path, int frame);

}  // namespace Pyxis
