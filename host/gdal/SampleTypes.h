#pragma once

#include <gdal.h>

#include <cstdint>
#include <optional>

#include "host/file/Export.h"
#include "pyxis/ReadImageFile.h"

class GDALRasterBand;

namespace Pyxis {

/// The sample format of a band, or of a type; GDAL's type does not say that bytes are signed.
SampleFormat sampleFormatOf(GDALRasterBand& band);
PYXIS_CODECS_API SampleFormat sampleFormatOf(GDALDataType type);

/// GDAL's type for samples of a format and a size in bits; none when there is no such type.
PYXIS_CODECS_API std::optional<GDALDataType> sampleTypeOf(SampleFormat format, std::int32_t bits);

}  // namespace Pyxis
