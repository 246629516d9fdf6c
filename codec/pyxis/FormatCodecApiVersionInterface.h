#pragma once

#include "pyxis/Export.h"

namespace Pyxis {

/// The version of the host interfaces that a codec module was built for.
class PYXIS_API FormatCodecApiVersionInterface {
  public:
    virtual ~FormatCodecApiVersionInterface();  // slot 0
    virtual int majorVersion() const = 0;       // slot 1
    virtual int minorVersion() const = 0;       // slot 2
};

}  // namespace Pyxis
