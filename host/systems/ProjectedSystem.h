#pragma once

#include <string>

#include "host/file/Export.h"

/// Returns the EPSG code and sets the WKT2 text, on one line, of the projected system in metres
/// that is registered under `code`, or of the one that replaces it. 0 when there is no such system.
extern "C" PYXIS_CODECS_API int pyxisProjectedSystem(int code, std::string& wkt);
