#pragma once

#include <gdal.h>

#include <string>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// A metadata item as GDAL keeps them.
struct MetadataItem {
    const char* domain;  ///< empty for the default one
    const char* key;
    std::string value;
};

/// The display channel, or grey for a panchromatic band.
GDALColorInterp colourOf(const Band& band);

/// The band's wavelengths as ENVI headers name them, which GIS programs look for, and as GDAL's
/// own IMAGERY domain does. Empty where the sensor is not known.
std::vector<MetadataItem> spectralMetadata(const Band& band);

/// Whether the samples are bytes with a sign, which GDAL marks beside the type.
bool hasSignedBytes(const Band& band);

}  // namespace kestms
