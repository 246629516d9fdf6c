#pragma once

#include <gdal.h>

#include <cstdint>
#include <optional>

#include "pyxis/ReadImageFile.h"

class GDALRasterBand;

namespace Pyxis {

/// How the samples of a band are to be read by a frame's users.
SampleFormat sampleFormatOf(GDALRasterBand& band);

/// GDAL's type for samples of a format and a size in bits; none when there is no such type.
std::optional<GDALDataType> sampleTypeOf(SampleFormat format, std::int32_t bits);

}  // namespace Pyxis
