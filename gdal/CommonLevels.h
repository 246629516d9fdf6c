#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "gdal/PixelSource.h"

namespace kestgdal {

/// The reduced sizes that all bands of a dataset have. Programs assume that all bands have the same
/// overviews, so only those count that every band on the grid itself has.
class CommonLevels {
  public:
    /// Adds the samples of a band on the dataset's own grid.
    void add(std::weak_ptr<PixelSource> samples) { samples_.push_back(std::move(samples)); }
    /// Largest first. Found at the first call, which may open the components.
    const std::vector<Pyxis::Size>& sizes();

  private:
    std::vector<std::weak_ptr<PixelSource>> samples_;
    std::optional<std::vector<Pyxis::Size>> sizes_;
};

}  // namespace kestgdal
