#include "tool/raster/OutputLayout.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include "host/Text.h"
#include "tool/raster/Placement.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

/// The most that a corner may lie off an upright window, in pixels.
constexpr double kMostSlant = 0.5;
/// Leaves room for sums of two positions.
constexpr double kLargestPosition = std::numeric_limits<int>::max() / 4.0;

double pixelArea(const Band& band) {
    const auto& place = band.georeference;
    return place ? std::abs(place->pixelWidth * place->pixelHeight) : 0.0;
}

PixelWindow windowOf(const Band& band, const Placement& grid) {
    const Placement placement = placementOf(band);
    const Pyxis::Point2d origin = grid.toRaster(placement.toWorld(0, 0));
    const Pyxis::Point2d right = grid.toRaster(placement.toWorld(band.width, 0));
    const Pyxis::Point2d bottom = grid.toRaster(placement.toWorld(0, band.height));
    const double width = right.x - origin.x;
    const double height = bottom.y - origin.y;
    // Written so that what is not a number fails.
    const bool upright = std::abs(right.y - origin.y) <= kMostSlant &&
                         std::abs(bottom.x - origin.x) <= kMostSlant && width > 0 && height > 0;
    const bool near = std::abs(origin.x) <= kLargestPosition &&
                      std::abs(origin.y) <= kLargestPosition && width <= kLargestPosition &&
                      height <= kLargestPosition;
    if (!upright || !near) {
        throw Failure(ExitCode::NotDecodable, band.componentPath,
                      "does not lie on the grid of the other bands");
    }
    const auto pixels = [](double value) { return static_cast<int>(std::lround(value)); };
    return {pixels(origin.x), pixels(origin.y), std::max(1, pixels(width)),
            std::max(1, pixels(height))};
}

Pyxis::RasterSource sourceOf(const Band& band) {
    throwIfInterrupted();
    const auto source =
        Pyxis::rasterSourceOf(Pyxis::fileSpecifier(band.componentPath), band.componentFrame);
    if (!source) {
        throw Failure(ExitCode::CannotRead, band.componentPath, "the band cannot be opened");
    }
    return *source;
}

OutputRaster rasterOf(const std::vector<const Band*>& bands, const std::string& path) {
    const Band& finest = **std::min_element(
        bands.begin(), bands.end(),
        [](const Band* a, const Band* b) { return pixelArea(*a) < pixelArea(*b); });
    const Placement grid = placementOf(finest);
    OutputRaster raster;
    raster.path = path;
    raster.coordinateSystem = finest.georeference->coordinateSystem;
    PixelWindow all{0, 0, finest.width, finest.height};
    for (const Band* band : bands) {
        const PixelWindow window = windowOf(*band, grid);
        const int right = std::max(all.x + all.width, window.x + window.width);
        const int bottom = std::max(all.y + all.height, window.y + window.height);
        all.x = std::min(all.x, window.x);
        all.y = std::min(all.y, window.y);
        all.width = right - all.x;
        all.height = bottom - all.y;
        raster.bands.push_back({band, window, sourceOf(*band)});
    }
    for (PlacedBand& placed : raster.bands) {
        placed.window.x -= all.x;
        placed.window.y -= all.y;
    }
    raster.size = {all.width, all.height};
    raster.geoTransform = grid.geoTransform(all.x, all.y);
    return raster;
}

std::string pathForBucket(const std::string& path, int bucket) {
    const std::filesystem::path whole(path);
    std::filesystem::path name = whole.stem();
    name += "_" + std::to_string(bucket);
    name += whole.extension();
    return (whole.parent_path() / name).string();
}

}  // namespace

std::vector<OutputRaster> layOut(const OpenedSet& set, const std::string& path, Grids grids) {
    std::vector<std::vector<const Band*>> groups(grids == Grids::OneForAll ? 1
                                                                           : set.buckets().size());
    for (const Band& band : set.bands()) {
        groups.at(grids == Grids::OneForAll ? 0 : static_cast<std::size_t>(band.bucket))
            .push_back(&band);
    }
    std::vector<OutputRaster> rasters;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!groups[i].empty()) {
            rasters.push_back(rasterOf(
                groups[i], groups.size() == 1 ? path : pathForBucket(path, static_cast<int>(i))));
        }
    }
    return rasters;
}

}  // namespace kestms
