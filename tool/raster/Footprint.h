#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "pyxis/Geometry.h"
#include "tool/scene/Band.h"

namespace kestms {

/// The footprint of bands as in GeoJSON: degrees of longitude and latitude on WGS 84.
struct Footprint {
    using Ring = std::vector<Pyxis::Point2d>;

    /// Closed, counter-clockwise, within -180 and 180 degrees. Two where the meridian of 180
    /// degrees cuts the area in parts.
    std::vector<Ring> parts;
    /// West, south, east, north; west is the larger one for an area across that meridian.
    std::array<double, 4> box{};
};

/// The rectangle, on the grid of the band with the smallest pixels, that holds all bands. Its edges
/// have points between the corners where they are no straight lines in degrees. Nothing where the
/// coordinate system is not tied to the Earth. Throws a Failure for a band without a place.
std::optional<Footprint> footprintOf(const std::vector<Band>& bands);

/// How many metres a unit of the coordinate system is on the ground, of degrees at the equator; 0
/// where that is not known.
double metresPerUnit(const std::string& wkt);

}  // namespace kestms
