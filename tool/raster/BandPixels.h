#pragma once

#include <optional>
#include <vector>

#include "pyxis/Geometry.h"
#include "tool/raster/Placement.h"
#include "tool/scene/OpenedSet.h"

namespace kestms {

/// A whole band as numbers, reduced to what a picture needs.
class BandPixels {
  public:
    /// Reads the band through its frame, with at most that many pixels on either side. Throws a
    /// Failure with ExitCode::CannotRead.
    BandPixels(const OpenedSet& set, const Band& band, int longestSide);

    /// The value at a place in the world; none outside the band and where it has no data.
    std::optional<double> at(const Pyxis::Point2d& world) const;

    /// The values below which those parts (0 to 1) of the band's valid pixels lie.
    std::vector<double> quantiles(const std::vector<double>& parts) const;

  private:
    bool isValid(double value) const;

    Placement placement_;
    Pyxis::Size size_;    ///< of the band
    Pyxis::Size buffer_;  ///< of what was read
    std::optional<double> noData_;
    std::vector<double> values_;
};

}  // namespace kestms
