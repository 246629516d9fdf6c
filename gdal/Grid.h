#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "pyxis/Geometry.h"
#include "tool/scene/Band.h"

namespace kestgdal {

/// From positions on a grid to positions in a band, both in pixels: origin + scale * position.
struct Axis {
    double origin = 0.0;
    double scale = 1.0;

    double at(double position) const { return origin + scale * position; }
};

/// The place of a band on a grid.
struct BandPlace {
    Axis x;
    Axis y;
    /// Whether the grid is the band's own: same size, same place.
    bool isOwnGrid = false;

    /// The same place on a grid of `coarse` pixels instead of `fine` ones.
    BandPlace onCoarserGrid(Pyxis::Size fine, Pyxis::Size coarse) const;
};

/// The grid of a dataset: `kestms::sharedGrid`, seen from each of its pixels.
struct Grid {
    Pyxis::Size size;
    std::array<double, 6> transform{};
    std::size_t finest = 0;         ///< the band that gave the grid
    std::vector<BandPlace> places;  ///< one for each band
};

/// Throws a Failure with ExitCode::NotDecodable for a band that is not upright on the grid.
Grid gridOf(const std::vector<kestms::Band>& bands);

}  // namespace kestgdal
