#include "tool/raster/Placement.h"

#include <algorithm>

namespace kestms {
namespace {

Pyxis::Point2d step(const Pyxis::Point2d& from, const Pyxis::Point2d& to, int pixels) {
    const double count = std::max(pixels, 1);
    return {(to.x - from.x) / count, (to.y - from.y) / count};
}

}  // namespace

Placement::Placement(const Georeference& georeference, Pyxis::Size size)
    : origin_(georeference.upperLeft),
      column_(step(georeference.upperLeft, georeference.upperRight, size.width)),
      row_(step(georeference.upperLeft, georeference.lowerLeft, size.height)) {}

Pyxis::Point2d Placement::toWorld(double column, double row) const {
    return {origin_.x + column * column_.x + row * row_.x,
            origin_.y + column * column_.y + row * row_.y};
}

Pyxis::Point2d Placement::toRaster(const Pyxis::Point2d& world) const {
    const double x = world.x - origin_.x;
    const double y = world.y - origin_.y;
    const double determinant = column_.x * row_.y - column_.y * row_.x;
    return {(x * row_.y - y * row_.x) / determinant, (y * column_.x - x * column_.y) / determinant};
}

std::array<double, 6> Placement::geoTransform(double column, double row) const {
    const Pyxis::Point2d origin = toWorld(column, row);
    return {origin.x, column_.x, row_.x, origin.y, column_.y, row_.y};
}

Placement placementOf(const Band& band) {
    if (!band.georeference) {
        throw Failure(ExitCode::NotDecodable, band.componentPath, "has no georeference");
    }
    return {*band.georeference, {band.width, band.height}};
}

}  // namespace kestms
