#pragma once

#include <map>
#include <utility>
#include <vector>

#include "pyxis/Geometry.h"

namespace kest {

/// Finds the bucket of a pixel size among those added so far.
///
/// Buckets are kept by the cells of a grid that is coarser than the tolerance, so that only a
/// cell and its neighbours need looking at, however many buckets there are. A cell is four
/// tolerances wide: two sizes within the tolerance lie at most one cell apart, rounding included,
/// because a size so large that its cell cannot be told exactly has neighbours further away than
/// the tolerance.
class BucketIndex {
  public:
    /// `tolerance` is the largest difference in x and in y at which two sizes count as equal.
    explicit BucketIndex(double tolerance);

    /// The lowest index of a bucket within the tolerance, or -1. A size that is not a number
    /// matches none.
    int find(const Pyxis::Vector2d& size) const;
    /// Adds a bucket under the next index, 0 first.
    void add(const Pyxis::Vector2d& size);

  private:
    using Cell = std::pair<double, double>;

    Cell cellOf(const Pyxis::Vector2d& size) const;
    bool matches(int bucket, const Pyxis::Vector2d& size) const;

    double tolerance_;
    std::vector<Pyxis::Vector2d> sizes_;
    std::map<Cell, std::vector<int>> cells_;
};

}  // namespace kest
