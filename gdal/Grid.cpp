#include "gdal/Grid.h"

#include "tool/raster/OutputGrid.h"

namespace kestgdal {
namespace {

using kestms::Band;

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
    const kestms::SharedGrid shared = kestms::sharedGrid(bands, {});
    Grid grid;
    grid.finest = shared.base;
    grid.size = shared.size;
    grid.transform = shared.geoTransform;
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const kestms::PixelRectangle& own = shared.rectangles[i];
        BandPlace place{axisOf(own.x, own.x + own.width, bands[i].width),
                        axisOf(own.y, own.y + own.height, bands[i].height)};
        place.isOwnGrid = isIdentity(place.x) && isIdentity(place.y) &&
                          bands[i].width == grid.size.width && bands[i].height == grid.size.height;
        grid.places.push_back(place);
    }
    return grid;
}

}  // namespace kestgdal
