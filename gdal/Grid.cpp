#include "gdal/Grid.h"

#include <cpl_string.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tool/raster/PixelGrid.h"
#include "tool/terminal/Failure.h"

namespace kestgdal {
namespace {

using kestms::Band;
using kestms::PixelGrid;

/// The most that a corner may lie off an upright rectangle, in pixels of the grid.
constexpr double kMostSlant = 0.5;
/// Places closer than that to a pixel's edge are meant to be on it: they come from sums of decimal
/// fractions.
constexpr double kSnap = 1e-3;
constexpr double kLargestPosition = std::numeric_limits<int>::max() / 4.0;

struct Rectangle {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

double snapped(double position) {
    const double whole = std::round(position);
    return std::abs(position - whole) < kSnap ? whole : position;
}

double pixelArea(const Band& band) {
    const auto& place = band.georeference;
    return place ? std::abs(place->pixelWidth * place->pixelHeight)
                 : std::numeric_limits<double>::max();
}

Rectangle rectangleOf(const Band& band, const PixelGrid& grid) {
    const PixelGrid placement(band);
    const Pyxis::Point2d origin = grid.toRaster(placement.toWorld(0, 0));
    const Pyxis::Point2d right = grid.toRaster(placement.toWorld(band.width, 0));
    const Pyxis::Point2d bottom = grid.toRaster(placement.toWorld(0, band.height));
    // Written so that what is not a number fails.
    const bool upright = std::abs(right.y - origin.y) <= kMostSlant &&
                         std::abs(bottom.x - origin.x) <= kMostSlant && right.x > origin.x &&
                         bottom.y > origin.y;
    const bool near = std::max(std::abs(origin.x), std::abs(right.x)) <= kLargestPosition &&
                      std::max(std::abs(origin.y), std::abs(bottom.y)) <= kLargestPosition;
    if (!upright || !near) {
        throw kestms::Failure(kestms::ExitCode::NotDecodable, band.componentPath,
                              "does not lie on the grid of the other bands");
    }
    return {snapped(origin.x), snapped(origin.y), snapped(right.x), snapped(bottom.y)};
}

/// The whole pixels that hold the rectangle as well where the band reaches beyond them by a pixel
/// of its own. Less does not count: the panchromatic band of a scene ends within the outermost
/// pixels of the coarser ones, and the grid shall be its own.
Rectangle extended(Rectangle all, const Rectangle& own, const Band& band) {
    const double column = (own.right - own.left) / band.width;
    const double row = (own.bottom - own.top) / band.height;
    if (all.left - own.left >= column) {
        all.left = std::floor(own.left);
    }
    if (own.right - all.right >= column) {
        all.right = std::ceil(own.right);
    }
    if (all.top - own.top >= row) {
        all.top = std::floor(own.top);
    }
    if (own.bottom - all.bottom >= row) {
        all.bottom = std::ceil(own.bottom);
    }
    return all;
}

Axis axisOf(double from, double to, int pixels) {
    const double scale = pixels / (to - from);
    return {-from * scale, scale};
}

bool isIdentity(const Axis& axis) {
    return axis.origin == 0.0 && axis.scale == 1.0;
}

}  // namespace

BandPlace BandPlace::onCoarserGrid(Pyxis::Size fine, Pyxis::Size coarse) const {
    return {{x.origin, x.scale * fine.width / coarse.width},
            {y.origin, y.scale * fine.height / coarse.height},
            isOwnGrid};
}

Grid gridOf(const std::vector<Band>& bands) {
    const auto finest =
        std::min_element(bands.begin(), bands.end(),
                         [](const Band& a, const Band& b) { return pixelArea(a) < pixelArea(b); });
    const PixelGrid placement(*finest);
    std::vector<Rectangle> rectangles;
    Rectangle all{0, 0, static_cast<double>(finest->width), static_cast<double>(finest->height)};
    for (const Band& band : bands) {
        rectangles.push_back(rectangleOf(band, placement));
        all = extended(all, rectangles.back(), band);
    }
    Grid grid;
    grid.finest = static_cast<std::size_t>(finest - bands.begin());
    grid.size = {static_cast<int>(all.right - all.left), static_cast<int>(all.bottom - all.top)};
    grid.transform = placement.geoTransform(all.left, all.top);
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const Rectangle& own = rectangles[i];
        BandPlace place{axisOf(own.left - all.left, own.right - all.left, bands[i].width),
                        axisOf(own.top - all.top, own.bottom - all.top, bands[i].height)};
        place.isOwnGrid = isIdentity(place.x) && isIdentity(place.y) &&
                          bands[i].width == grid.size.width && bands[i].height == grid.size.height;
        grid.places.push_back(place);
    }
    return grid;
}

std::string pixelSizeLabel(const Band& band, const std::string& unit) {
    if (!band.georeference) {
        return {};
    }
    const std::string x = CPLSPrintf("%.9g", std::abs(band.georeference->pixelWidth));
    const std::string y = CPLSPrintf("%.9g", std::abs(band.georeference->pixelHeight));
    return (x == y ? x : x + "x" + y) + unit;
}

}  // namespace kestgdal
