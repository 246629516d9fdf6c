#pragma once

#include "pyxis/Export.h"
#include "pyxis/FileSpecifier.h"

namespace Pyxis {

class ImageFormatCodec;

/// Finds a file that belongs to another one.
class PYXIS_API FindFileInterface {
  public:
    virtual ~FindFileInterface();  // slot 0
    /// Looks for `nameToLookFor` beside `base`, a file that `codec` is about to open. True when
    /// it exists; then `found` names it. `found` may be the same object as `nameToLookFor`; it is
    /// unchanged when nothing was found.
    virtual bool findFile(const ImageFormatCodec* codec, const FileSpecifier& base,
                          const FileSpecifier& nameToLookFor, FileSpecifier& found) = 0;  // slot 1
};

}  // namespace Pyxis
