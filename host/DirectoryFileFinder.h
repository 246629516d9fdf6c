#pragma once

#include "pyxis/FindFileInterface.h"

namespace Pyxis {

/// Looks for a regular file, or a link to one, in the directory of the base file, ignoring any
/// directory in the name: the exact name first, then ignoring the case of ASCII letters. Returns
/// the full path as wide text.
class PYXIS_API DirectoryFileFinder : public FindFileInterface {
  public:
    ~DirectoryFileFinder() override;
    bool findFile(const ImageFormatCodec* codec, const FileSpecifier& base,
                  const FileSpecifier& nameToLookFor, FileSpecifier& found) override;
};

}  // namespace Pyxis
