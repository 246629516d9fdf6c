#pragma once

#include <gdal.h>

#include <cstdint>
#include <optional>

#include "pyxis/ReadImageFile.h"

class GDALRasterBand;

namespace Pyxis {

/// The sample format of a band.
SampleFormat sampleFormatOf(GDALRasterBand& band);

/// GDAL's type for samples of a format and a size in bits; none when there is no such type.
std::optional<GDALDataType> sampleTypeOf(SampleFormat format, std::int32_t bits);

}  // namespace Pyxis
