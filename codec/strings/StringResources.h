#pragma once

#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Names the string-resource module; a module already loaded is released. The new one is loaded
/// with the first text. Process-wide, like everything here; not guarded by a lock.
void setResourceFileName(const Pyxis::FileSpecifier& file);

/// Unloads the string-resource module if it is loaded.
void releaseResourceModule();

/// Fills `text` with string `id` as wide text, terminator included; an unknown id gives an empty
/// text. False, with an empty text, when no module can be loaded.
bool loadResourceString(unsigned int id, Pyxis::StringBuffer& text);

}  // namespace kest
