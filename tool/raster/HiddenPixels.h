#pragma once

#include <string>

#include "tool/raster/OutputGrid.h"

namespace kestms {

/// One line that counts, by band, the pixels with data whose value becomes the no-data value; empty
/// when there are none. Reads all pixels of bands with another no-data value of their own. Throws a
/// Failure with ExitCode::CannotRead.
std::string hiddenPixelsNote(const OutputRaster& raster, const std::string& resampling,
                             double value);

}  // namespace kestms
