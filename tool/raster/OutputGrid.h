#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "host/codecs/RasterSource.h"
#include "pyxis/Geometry.h"
#include "tool/raster/ExportRequest.h"
#include "tool/raster/PixelGrid.h"
#include "tool/scene/OpenedSet.h"

// The places of a set's bands in multi-band rasters.

class OGRSpatialReference;

namespace kestms {

/// A rectangle in a raster, in fractional pixels from its upper-left corner.
struct PixelRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// A band and the rectangle that it fills.
struct OutputBand {
    Band band;
    PixelRectangle rectangle;
    Pyxis::RasterSource source;  ///< where GDAL finds its samples

    bool hasOtherPixelSize() const;
    /// Whether no pixel of the grid takes its value from more than one of the band's, or from a
    /// part of one.
    bool isOnGrid() const;
};

/// One raster to write.
struct OutputRaster {
    std::string path;
    Pyxis::Size size;
    std::array<double, 6> geoTransform{};
    std::string coordinateSystem;  ///< WKT; may be empty
    double pixelWidth = 0;         ///< in units of the coordinate system
    double pixelHeight = 0;
    bool isCut = false;  ///< `box` or `window` reached beyond the scene
    std::vector<OutputBand> bands;
};

/// Where GDAL finds a band's samples. Throws a Failure with ExitCode::CannotRead.
Pyxis::RasterSource sourceOf(const Band& band);

/// The grid that bands share, and where each of them is on it.
struct SharedGrid {
    PixelGrid grid;
    Pyxis::Size size;
    std::array<double, 6> geoTransform{};
    std::size_t base = 0;                    ///< the band that gave the grid
    bool isCut = false;                      ///< the part reached beyond the extent
    std::vector<PixelRectangle> rectangles;  ///< one for each band
};

/// The corners of a part of the scene, in the world.
using ScenePart = std::array<Pyxis::Point2d, 4>;

/// What `box` or `window` ask for, if they do. A window counts the pixels of the grid that the
/// bands share. Throws a Failure as `layOut` does.
std::optional<ScenePart> requestedPart(const std::vector<Band>& bands, const GridOptions& options);

/// The grid of the base band, extended in whole pixels where another reaches beyond it by a pixel
/// of its own or more. Throws a Failure as `layOut` does.
SharedGrid sharedGrid(const std::vector<Band>& bands, const GridOptions& options);

/// "m", "deg", or nothing for another unit.
std::string unitOf(const OGRSpatialReference& system);

/// How the band's pixel size is written in names: "15m", "60x30m", "0.00025deg". Five digits
/// distinguish sizes that differ for people.
std::string pixelSizeLabel(const Band& band, const std::string& unit);

/// The rasters that show the bands, or a part of them, each band exactly where it is in the
/// world, on the grid that they share. Throws a Failure:
/// ExitCode::NotDecodable for a band that no upright rectangle can hold, ExitCode::CannotRead for
/// one that GDAL cannot find, ExitCode::Usage for a part that holds nothing or a raster too large.
std::vector<OutputRaster> layOut(const std::vector<Band>& bands, const std::string& path,
                                 const GridOptions& options, const std::optional<ScenePart>& part);

/// Says that the part asked for reaches beyond the scene; empty if it does not.
std::string cutNote(const OutputRaster& raster);

/// One line that says which bands are resampled or moved by the grid; empty when none is.
std::string resamplingNote(const OutputRaster& raster, const std::string& method);

}  // namespace kestms
