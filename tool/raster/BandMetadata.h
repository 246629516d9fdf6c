#pragma once

#include <gdal.h>

#include <string>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// A GDAL metadata item.
struct MetadataItem {
    const char* domain;  ///< empty for the default one
    const char* key;
    std::string value;
};

/// The display channel, or grey for a panchromatic band.
GDALColorInterp colourOf(const Band& band);

/// The band's wavelengths under the names of ENVI headers, which GIS programs look for, and of
/// GDAL's IMAGERY domain. Empty if the sensor is unknown.
std::vector<MetadataItem> spectralMetadata(const Band& band);

/// Whether the samples are signed bytes, which GDAL marks apart from the type.
bool hasSignedBytes(const Band& band);

}  // namespace kestms
