#pragma once

#include <optional>
#include <string>

#include "host/codecs/RasterSource.h"
#include "host/gdal/PrivateFiles.h"

namespace kestms {

/// GDAL's name for a source, under which GDAL sees nothing beside the files of the source. Only a
/// virtual raster keeps its own name, as it may name its sources relative to it.
class SourceName {
  public:
    SourceName(const std::string& path, const Pyxis::RasterSource& source)
        : name_(source.prefix + path) {
        if (!source.files.empty()) {
            name_ = source.prefix + files_.emplace(source.files).name();
        }
    }

    const std::string& text() const { return name_; }

  private:
    std::optional<Pyxis::PrivateFiles> files_;
    std::string name_;
};

}  // namespace kestms
