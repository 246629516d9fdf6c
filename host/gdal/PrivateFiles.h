#pragma once

#include <string>
#include <vector>

#include "host/file/Export.h"

namespace Pyxis {

/// Files that GDAL sees under private names, with nothing beside them. Some of its drivers look for
/// side files in any case; here they find none.
class PYXIS_CODECS_API PrivateFiles {
  public:
    /// Absolute paths, the main file first.
    explicit PrivateFiles(std::vector<std::string> paths);
    PrivateFiles(const PrivateFiles&) = delete;
    PrivateFiles& operator=(const PrivateFiles&) = delete;
    ~PrivateFiles();

    /// GDAL's name for the main file, valid for the lifetime of this object.
    std::string name() const;

    /// Replaces such names in a message of GDAL's.
    static std::string withoutNames(std::string message);

  private:
    unsigned number_;
};

}  // namespace Pyxis
