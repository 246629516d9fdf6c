#pragma once

#include <array>

#include "pyxis/Geometry.h"
#include "tool/scene/Band.h"

namespace kestms {

/// Maps between raster positions, in pixels from the upper-left corner, and the world.
class PixelGrid {
  public:
    /// The grid of a band, by three corners; one without extent has no way back. Throws a Failure
    /// with ExitCode::NotDecodable for a band without georeference.
    explicit PixelGrid(const Band& band);

    /// In units of the coordinate system.
    double pixelWidth() const;
    double pixelHeight() const;
    double pixelArea() const { return pixelWidth() * pixelHeight(); }
    /// The grid with the same corner and directions, and square pixels of that size.
    PixelGrid withPixelSize(double size) const;

    Pyxis::Point2d toWorld(double column, double row) const;
    Pyxis::Point2d toRaster(const Pyxis::Point2d& world) const;
    /// As GDAL takes it, for a raster whose upper-left corner is at that position in this one.
    std::array<double, 6> geoTransform(double column, double row) const;

  private:
    Pyxis::Point2d origin_;
    Pyxis::Point2d column_;  ///< one pixel to the right
    Pyxis::Point2d row_;     ///< one pixel down
};

}  // namespace kestms
