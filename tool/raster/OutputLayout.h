#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/codecs/RasterSource.h"
#include "pyxis/Geometry.h"
#include "tool/scene/OpenedSet.h"

// How the bands of a set lie in the multi-band rasters that they are handed on in.

namespace kestms {

/// A window in a raster, in whole pixels.
struct PixelWindow {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// A band and the window that the whole of it fills. A window of the band's own size holds its
/// pixels as they are.
struct PlacedBand {
    const Band* band = nullptr;
    PixelWindow window;
    Pyxis::RasterSource source;  ///< where GDAL finds its samples
};

/// One raster to write. Its grid covers every band.
struct OutputRaster {
    std::string path;
    Pyxis::Size size;
    std::array<double, 6> geoTransform{};
    std::string coordinateSystem;  ///< WKT; may be empty
    std::vector<PlacedBand> bands;
};

enum class Grids {
    OnePerBucket,
    OneForAll,  ///< that of the band with the smallest pixels
};

/// The rasters that the set is handed on in. Where there is more than one, bucket N gets the path
/// with "_N" before the extension. Bands of one pixel size that are a part of a pixel apart are
/// moved to one grid. Points into `set`. Throws a Failure with ExitCode::NotDecodable for a band
/// that no upright window can hold, and one with ExitCode::CannotRead for a band that GDAL cannot
/// find.
std::vector<OutputRaster> layOut(const OpenedSet& set, const std::string& path, Grids grids);

}  // namespace kestms
