#pragma once

#include "gdal/Grid.h"
#include "gdal/PixelSource.h"

namespace kestgdal {

/// A window of a grid that may begin and end within pixels.
struct GridWindow {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Reads a window of a grid out of a source that lies elsewhere on it: each sample of the buffer
/// is the source's pixel at the sample's centre, `outside` where the source does not reach. Reads
/// the reduced level that suffices. False when the source cannot be read.
bool readPlaced(PixelSource& source, const BandPlace& place, const GridWindow& window,
                const Buffer& buffer, double outside);

}  // namespace kestgdal
