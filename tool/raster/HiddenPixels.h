#pragma once

#include <string>

#include "tool/raster/OutputGrid.h"

namespace kestms {

/// One line that counts, by band, the pixels with data that have the value and so lose it when the
/// value comes to mean "no data"; empty when there are none. Reads all pixels of bands whose own
/// no-data value is another. Throws a Failure with ExitCode::CannotRead.
std::string hiddenPixelsNote(const OutputRaster& raster, const std::string& resampling,
                             double value);

}  // namespace kestms
