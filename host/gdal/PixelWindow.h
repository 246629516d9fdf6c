#pragma once

#include <gdal_priv.h>

#include <cstdint>
#include <optional>

#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// How the samples of a band are to be read by a frame's users.
SampleFormat sampleFormatOf(GDALRasterBand& band);

/// GDAL's type for samples of a format and a size in bits; none when there is no such type.
std::optional<GDALDataType> sampleTypeOf(SampleFormat format, std::int32_t bits);

/// Reads the window that `request` asks for out of a band or one of its overviews. False when
/// window, buffer or sample type do not fit, or the pixels cannot be read. Without `overviews` GDAL
/// is kept from looking for any when the window is reduced. `format` is that of the band's samples.
bool readWindow(GDALRasterBand& band, SampleFormat format, const PixelRequest& request,
                bool overviews);

/// Whether GDAL can read the last pixel of the last band, and so the whole block around it. False
/// without a try when that block takes more than 64 MiB.
bool canReadLastPixel(GDALDataset& dataset);

}  // namespace Pyxis
