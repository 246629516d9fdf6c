#pragma once

#include <cstdint>
#include <memory>

#include "host/gdal/CoordinateSystems.h"
#include "host/gdal/RasterFacts.h"
#include "pyxis/Geometry.h"

namespace Pyxis {

/// Where a raster lies, as its file says.
struct GeoFacts {
    GeoTransform transform{};
    std::int32_t width = 0;
    std::int32_t height = 0;
    SharedSystem system;

    /// World position of a place in the raster, counted in pixels from its first corner.
    Point2d at(double column, double row) const;
    const CoordinateSystem& coordinateSystem() const { return *system.get(); }
    /// Width and height of a pixel in world units, never negative.
    Vector2d pixelSize() const;
    /// Whether the raster shows the world mirrored, as one does whose lines run northward.
    bool mirrored() const;
    double rotation() const;
    /// Whether origin, pixel size and rotation tell the corners, as they do for an upright raster
    /// and a turned one with square pixels.
    bool isToldByRotation() const;
};

/// Null when the raster, of this size in pixels, has no usable geotransform (ground control points
/// alone do not tell where each corner lies), or its file is gone. Rasters with the same system key
/// have the same coordinate system, which is then worked out once.
std::shared_ptr<const GeoFacts> readGeoFacts(const PlaceFacts& place, std::int32_t width,
                                             std::int32_t height, const DatasetOpener& open);

}  // namespace Pyxis
