#pragma once

#include "host/file/Expected.h"
#include "host/file/Export.h"

namespace Pyxis {

/// A function of a library, which is named relative to the directory of the library of component
/// codecs. It is loaded at the first call and stays loaded. Refused with the loader's reason.
PYXIS_CODECS_API Expected<void*> functionIn(const char* library, const char* function);

/// How many libraries the process has loaded so far.
unsigned long long numberOfLoads();

/// Whether the process has loaded that library, for whatever reason. Takes as long as opening a
/// file.
bool isLoaded(const char* library);

}  // namespace Pyxis
