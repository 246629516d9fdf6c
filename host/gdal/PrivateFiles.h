#pragma once

#include <string>
#include <vector>

#include "host/gdal/Export.h"

namespace Pyxis {

/// Files that GDAL sees under names of their own, with nothing beside them. Some of its drivers
/// look for side files whatever they are told; here there are none to find.
class PYXIS_CODECS_API PrivateFiles {
  public:
    /// Absolute paths, the main file first.
    explicit PrivateFiles(std::vector<std::string> paths);
    PrivateFiles(const PrivateFiles&) = delete;
    PrivateFiles& operator=(const PrivateFiles&) = delete;
    ~PrivateFiles();

    /// GDAL's name for the main file, good for as long as this lives.
    std::string name() const;

    /// What GDAL's messages should say instead of such names.
    static std::string withoutNames(std::string message);

  private:
    unsigned number_;
};

}  // namespace Pyxis
