#include "reader/BucketIndex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kest {
namespace {

constexpr double kCellTolerances = 4.0;

}  // namespace

BucketIndex::BucketIndex(double tolerance) : tolerance_(tolerance) {}

BucketIndex::Cell BucketIndex::cellOf(const Pyxis::Vector2d& size) const {
    const double width = kCellTolerances * tolerance_;
    return {std::floor(size.x / width), std::floor(size.y / width)};
}

bool BucketIndex::matches(int bucket, const Pyxis::Vector2d& size) const {
    const Pyxis::Vector2d& other = sizes_[static_cast<std::size_t>(bucket)];
    return std::abs(other.x - size.x) <= tolerance_ && std::abs(other.y - size.y) <= tolerance_;
}

int BucketIndex::find(const Pyxis::Vector2d& size) const {
    if (!std::isfinite(size.x) || !std::isfinite(size.y)) {
        return -1;
    }
    const Cell centre = cellOf(size);
    int first = -1;
    for (const double x : {centre.first - 1.0, centre.first, centre.first + 1.0}) {
        for (const double y : {centre.second - 1.0, centre.second, centre.second + 1.0}) {
            const auto cell = cells_.find({x, y});
            if (cell == cells_.end()) {
                continue;
            }
            const auto found = std::find_if(cell->second.begin(), cell->second.end(),
                                            [&](int bucket) { return matches(bucket, size); });
            if (found != cell->second.end() && (first < 0 || *found < first)) {
                first = *found;
            }
        }
    }
    return first;
}

void BucketIndex::add(const Pyxis::Vector2d& size) {
    if (std::isfinite(size.x) && std::isfinite(size.y)) {
        cells_[cellOf(size)].push_back(static_cast<int>(sizes_.size()));
    }
    sizes_.push_back(size);
}

}  // namespace kest
