#pragma once

#include <optional>

#include "pyxis/FileReadDescriptor.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/ImageFormatCodec.h"

namespace kest {

/// The codec by which the host reads the file, the host's own; null when it has none. Exceptions
/// of the host pass.
const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file);

/// Value of the selected frame's property, if it is a text. Exceptions of the host pass.
std::optional<Pyxis::StringBuffer> stringValue(Pyxis::FileReadDescriptor& descriptor,
                                               const Pyxis::StringBuffer& name);

}  // namespace kest
