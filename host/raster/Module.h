#pragma once

#include "host/file/Expected.h"

namespace Pyxis {

/// A function of a library in the directory of the library of component codecs. The library is
/// loaded at the first call and stays loaded. Refused with the loader's reason.
Expected<void*> functionIn(const char* library, const char* function);

/// Whether the process has loaded that library, for whatever reason.
bool isLoaded(const char* library);

}  // namespace Pyxis
