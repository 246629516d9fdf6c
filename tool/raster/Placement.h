#pragma once

#include <array>

#include "pyxis/Geometry.h"
#include "tool/scene/OpenedSet.h"

namespace kestms {

/// The way between positions in a raster, counted in pixels from its upper-left corner, and the
/// world.
class Placement {
  public:
    /// By three corners of a raster of that size. A raster without extent has no way back.
    Placement(const Georeference& georeference, Pyxis::Size size);

    Pyxis::Point2d toWorld(double column, double row) const;
    Pyxis::Point2d toRaster(const Pyxis::Point2d& world) const;
    /// The coefficients as GDAL takes them, for a raster whose upper-left corner lies at that
    /// position in this one.
    std::array<double, 6> geoTransform(double column, double row) const;

  private:
    Pyxis::Point2d origin_;
    Pyxis::Point2d column_;  ///< one pixel to the right
    Pyxis::Point2d row_;     ///< one pixel down
};

/// Where the band lies. Throws a Failure with ExitCode::NotDecodable for one without georeference.
Placement placementOf(const Band& band);

}  // namespace kestms
