#pragma once

#include "tool/raster/OutputGrid.h"
#include "tool/raster/Picture.h"

namespace kestms {

/// Draws a raster of three bands, as red, green and blue, or of one, as grey. Each is stretched
/// from 2 to 98 % of its values; where one has no data the picture is transparent. `longest` is the
/// longer side in pixels; a smaller raster is enlarged by a whole number. Throws a Failure with
/// ExitCode::CannotRead.
Picture drawQuicklook(const OutputRaster& raster, int longest);

}  // namespace kestms
