#pragma once

#include <cstdint>
#include <memory>

#include "host/raster/CoordinateSystems.h"
#include "host/raster/RasterFacts.h"
#include "pyxis/Geometry.h"

namespace Pyxis {

/// The georeference of a raster.
struct GeoFacts {
    GeoTransform transform{};
    std::int32_t width = 0;
    std::int32_t height = 0;
    SharedSystem system;

    /// World position of a raster position, in pixels from the first corner.
    Point2d at(double column, double row) const;
    const CoordinateSystem& coordinateSystem() const { return *system.get(); }
    /// Width and height of a pixel in world units, never negative.
    Vector2d pixelSize() const;
    /// Whether the raster is mirrored, as one whose lines run northward is.
    bool mirrored() const;
    double rotation() const;
    /// Whether origin, pixel size and rotation determine the corners, as for an upright raster and
    /// a rotated one with square pixels.
    bool rotationDeterminesCorners() const;
};

/// Null when the raster, of this size in pixels, has no usable geotransform (ground control points
/// alone do not determine each corner), or its file is gone. Rasters with the same system key have
/// the same coordinate system, which is computed once.
std::shared_ptr<const GeoFacts> readGeoFacts(const PlaceFacts& place, std::int32_t width,
                                             std::int32_t height, const DatasetOpener& open);

}  // namespace Pyxis
