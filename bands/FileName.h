#pragma once

#include <string_view>

#include "platform/Platform.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

// Components and the names of their files.

namespace kest {

/// Name and extension of a component's file.
platform::PathName fileNameOf(const Pyxis::FileSpecifier& file);

/// Component `index` (0 first) of a compound specifier, an empty one when there is none; any other
/// specifier unchanged.
Pyxis::FileSpecifier componentAt(const Pyxis::FileSpecifier& spec, int index);

/// The text in the host's default character type, terminator included.
Pyxis::StringBuffer nameBuffer(std::u16string_view text);

}  // namespace kest
