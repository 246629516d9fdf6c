#pragma once

#include "pyxis/FileSpecifier.h"
#include "pyxis/ImageFormatCodec.h"

namespace kest {

/// The codec with which the host reads the file, owned by the host; null when there is none or the
/// host throws. Throws std::bad_alloc only.
const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file);

}  // namespace kest
