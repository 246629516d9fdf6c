#pragma once

#include <optional>

#include "pyxis/FileReadDescriptor.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Value of the selected frame's property, if it is a text. Exceptions of the host propagate.
std::optional<Pyxis::StringBuffer> stringValue(Pyxis::FileReadDescriptor& descriptor,
                                               const Pyxis::StringBuffer& name);

}  // namespace kest
