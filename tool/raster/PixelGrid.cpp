#include "tool/raster/PixelGrid.h"

#include <algorithm>
#include <cmath>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

Pyxis::Point2d step(const Pyxis::Point2d& from, const Pyxis::Point2d& to, int pixels) {
    const double count = std::max(pixels, 1);
    return {(to.x - from.x) / count, (to.y - from.y) / count};
}

}  // namespace

PixelGrid::PixelGrid(const Band& band) {
    if (!band.georeference) {
        throw Failure(ExitCode::NotDecodable, band.componentPath, "has no georeference");
    }
    const Georeference& place = *band.georeference;
    origin_ = place.upperLeft;
    column_ = step(origin_, place.upperRight, band.width);
    row_ = step(origin_, place.lowerLeft, band.height);
}

double PixelGrid::pixelWidth() const {
    return std::hypot(column_.x, column_.y);
}

double PixelGrid::pixelHeight() const {
    return std::hypot(row_.x, row_.y);
}

PixelGrid PixelGrid::withPixelSize(double size) const {
    PixelGrid grid = *this;
    grid.column_ = {column_.x * size / pixelWidth(), column_.y * size / pixelWidth()};
    grid.row_ = {row_.x * size / pixelHeight(), row_.y * size / pixelHeight()};
    return grid;
}

Pyxis::Point2d PixelGrid::toWorld(double column, double row) const {
    return {origin_.x + column * column_.x + row * row_.x,
            origin_.y + column * column_.y + row * row_.y};
}

Pyxis::Point2d PixelGrid::toRaster(const Pyxis::Point2d& world) const {
    const double x = world.x - origin_.x;
    const double y = world.y - origin_.y;
    const double determinant = column_.x * row_.y - column_.y * row_.x;
    return {(x * row_.y - y * row_.x) / determinant, (y * column_.x - x * column_.y) / determinant};
}

std::array<double, 6> PixelGrid::geoTransform(double column, double row) const {
    const Pyxis::Point2d corner = toWorld(column, row);
    return {corner.x, column_.x, row_.x, corner.y, column_.y, row_.y};
}

}  // namespace kestms
