#pragma once

#include "pyxis/ReadImageFile.h"

class GDALRasterBand;

namespace Pyxis {

/// Reads the window of `request` from a band or one of its overviews. False when window, buffer or
/// sample type do not fit, or the pixels cannot be read. Without `overviews` GDAL does not look for
/// any when the window is reduced. `format` is that of the band's samples.
bool readWindow(GDALRasterBand& band, SampleFormat format, const PixelRequest& request,
                bool overviews);

}  // namespace Pyxis
