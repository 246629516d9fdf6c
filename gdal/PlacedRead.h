#pragma once

#include "gdal/Grid.h"
#include "gdal/PixelSource.h"
#include "tool/raster/OutputGrid.h"

namespace kestgdal {

/// Reads a window of a grid from a source that is elsewhere on it: each sample of the buffer
/// is the source's pixel at the sample's centre, `outside` where the source does not reach. Reads
/// the most reduced level that has a pixel for each sample. False when the source cannot be read.
bool readPlaced(PixelSource& source, const BandPlace& place, const kestms::PixelRectangle& window,
                const Buffer& buffer, double outside);

}  // namespace kestgdal
