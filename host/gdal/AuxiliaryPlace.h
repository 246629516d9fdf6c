#pragma once

#include <optional>
#include <string>

#include "host/file/WorldFile.h"

namespace Pyxis {

/// The georeference in an auxiliary file.
struct AuxiliaryPlace {
    std::optional<GeoTransform> transform;
    std::string system;  ///< a coordinate system as GDAL writes it; empty when it names none
};

/// Reads the georeference from the text of an auxiliary file, as GDAL does, and nothing else: it
/// may name other files. Empty for another text.
AuxiliaryPlace auxiliaryPlaceIn(const std::string& text);

}  // namespace Pyxis
