#pragma once

#include <optional>
#include <string>

#include "host/file/WorldFile.h"

namespace Pyxis {

/// Where an auxiliary file says that its raster lies.
struct AuxiliaryPlace {
    std::optional<GeoTransform> transform;
    std::string system;  ///< a coordinate system as GDAL writes it; empty when it names none
};

/// The place in the text of an auxiliary file, as GDAL takes it. Nothing else is read out of it:
/// it may name other files. Empty where it is no such text.
AuxiliaryPlace auxiliaryPlaceIn(const std::string& text);

}  // namespace Pyxis
