#pragma once

#include "pyxis/FileSpecifier.h"
#include "pyxis/ImageFormatCodec.h"

namespace kest {

/// The codec through which the host reads the file, owned by the host; null when there is none. A
/// host that throws when asked has none. Throws std::bad_alloc only.
const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file);

}  // namespace kest
