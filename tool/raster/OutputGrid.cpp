#include "tool/raster/OutputGrid.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <utility>

#include "tool/raster/PixelGrid.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/NumberText.h"

namespace kestms {
namespace {

/// The most that a corner may be off an upright rectangle, in pixels.
constexpr double kMostSlant = 0.5;
constexpr const char* kHoldsNothing = "the part asked for holds nothing of the scene";
constexpr double kLargestSide = std::numeric_limits<int>::max();
/// Positions are kept to this part of a pixel, exactly representable, so that what was computed
/// from corners does not differ from a whole pixel by the noise of the last digit.
constexpr double kPositionStep = 1.0 / (1 << 20);

double snapped(double position) {
    return std::round(position / kPositionStep) * kPositionStep + 0.0;  // no negative zero
}

bool isWhole(double value) {
    return value == std::round(value);
}

Pyxis::Point2d placeIn(const PixelGrid& grid, const Pyxis::Point2d& world) {
    const Pyxis::Point2d place = grid.toRaster(world);
    return {snapped(place.x), snapped(place.y)};
}

PixelRectangle rectangleOf(const Band& band, const PixelGrid& grid) {
    const PixelGrid own(band);
    const Pyxis::Point2d origin = placeIn(grid, own.toWorld(0, 0));
    const Pyxis::Point2d right = placeIn(grid, own.toWorld(band.width, 0));
    const Pyxis::Point2d bottom = placeIn(grid, own.toWorld(0, band.height));
    const PixelRectangle rectangle{origin.x, origin.y, right.x - origin.x, bottom.y - origin.y};
    // Negated so that NaN fails.
    const bool upright = std::abs(right.y - origin.y) <= kMostSlant &&
                         std::abs(bottom.x - origin.x) <= kMostSlant && rectangle.width > 0 &&
                         rectangle.height > 0;
    if (!upright) {
        throw Failure(ExitCode::NotDecodable, band.componentPath,
                      "does not lie on the grid of the other bands");
    }
    return rectangle;
}

bool hasPixelSize(const Band& band, double size) {
    const PixelGrid grid(band);
    return std::abs(grid.pixelWidth() - size) <= kPositionStep * size &&
           std::abs(grid.pixelHeight() - size) <= kPositionStep * size;
}

/// The band whose pixels the grid has, or that it starts from. Bands of the size that is asked for
/// do not move.
std::size_t baseOf(const std::vector<const Band*>& bands, const GridOptions& options) {
    if (options.resolution == GridOptions::Resolution::Given) {
        const auto same = std::find_if(bands.begin(), bands.end(), [&options](const Band* band) {
            return hasPixelSize(*band, options.pixelSize);
        });
        if (same != bands.end()) {
            return static_cast<std::size_t>(same - bands.begin());
        }
    }
    const auto smaller = [](const Band* a, const Band* b) {
        return PixelGrid(*a).pixelArea() < PixelGrid(*b).pixelArea();
    };
    // Of several, the first.
    const bool coarsest = options.resolution == GridOptions::Resolution::Coarsest;
    const auto base = coarsest ? std::max_element(bands.begin(), bands.end(), smaller)
                               : std::min_element(bands.begin(), bands.end(), smaller);
    return static_cast<std::size_t>(base - bands.begin());
}

/// The whole pixels that hold the base, and another band where that reaches beyond them by a pixel
/// of its own. Less does not count: the panchromatic band of a scene ends within the outermost
/// pixels of the coarser ones, and keeps its own grid.
PixelRectangle extended(const PixelRectangle& all, const PixelRectangle& own, const Band& band) {
    const double column = own.width / band.width;
    const double row = own.height / band.height;
    double right = all.x + all.width;
    double bottom = all.y + all.height;
    const double ownRight = own.x + own.width;
    const double ownBottom = own.y + own.height;
    const double left = all.x - own.x >= column ? std::floor(own.x) : all.x;
    const double top = all.y - own.y >= row ? std::floor(own.y) : all.y;
    right = ownRight - right >= column ? std::ceil(ownRight) : right;
    bottom = ownBottom - bottom >= row ? std::ceil(ownBottom) : bottom;
    return {left, top, right - left, bottom - top};
}

/// The upright rectangle in a grid, which may be rotated, that holds the part.
PixelRectangle rectangleOf(const ScenePart& part, const PixelGrid& grid) {
    const Pyxis::Point2d corners[] = {placeIn(grid, part[0]), placeIn(grid, part[1]),
                                      placeIn(grid, part[2]), placeIn(grid, part[3])};
    const auto [left, right] =
        std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [top, bottom] =
        std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    return {left, top, right - left, bottom - top};
}

PixelRectangle wholePixels(const PixelRectangle& rectangle) {
    const double left = std::floor(rectangle.x);
    const double top = std::floor(rectangle.y);
    return {left, top, std::ceil(rectangle.x + rectangle.width) - left,
            std::ceil(rectangle.y + rectangle.height) - top};
}

PixelRectangle intersection(const PixelRectangle& a, const PixelRectangle& b) {
    const double left = std::max(a.x, b.x);
    const double top = std::max(a.y, b.y);
    return {left, top, std::min(a.x + a.width, b.x + b.width) - left,
            std::min(a.y + a.height, b.y + b.height) - top};
}

/// Parts of a pixel are lost where pixel sizes differ; they are not worth a word.
bool reachesBeyond(const PixelRectangle& part, const PixelRectangle& extent) {
    return extent.x - part.x >= 1 || extent.y - part.y >= 1 ||
           part.x + part.width - (extent.x + extent.width) >= 1 ||
           part.y + part.height - (extent.y + extent.height) >= 1;
}

/// For a box in degrees, most often, when the coordinate system has metres.
[[noreturn]] void refuseEmptyPart(const PixelGrid& grid, const PixelRectangle& extent) {
    const auto corner = [&](double right, double down) {
        return grid.toWorld(extent.x + right * extent.width, extent.y + down * extent.height);
    };
    const std::array corners = {corner(0, 0), corner(1, 0), corner(0, 1), corner(1, 1)};
    const auto byX = [](const auto& a, const auto& b) { return a.x < b.x; };
    const auto byY = [](const auto& a, const auto& b) { return a.y < b.y; };
    const auto [west, east] = std::minmax_element(corners.begin(), corners.end(), byX);
    const auto [south, north] = std::minmax_element(corners.begin(), corners.end(), byY);
    throw Failure(ExitCode::Usage, std::string(kHoldsNothing) + ", which covers " +
                                       numberText(west->x) + "," + numberText(south->y) + "," +
                                       numberText(east->x) + "," + numberText(north->y) +
                                       " in its coordinate system");
}

/// The grid that the bands share, or the whole pixels of it that hold the part.
SharedGrid gridOf(const std::vector<const Band*>& bands, const GridOptions& options,
                  const std::optional<ScenePart>& part) {
    const std::size_t base = baseOf(bands, options);
    const PixelGrid own(*bands[base]);
    const bool isGiven = options.resolution == GridOptions::Resolution::Given;
    const PixelGrid grid = isGiven ? own.withPixelSize(options.pixelSize) : own;
    std::vector<PixelRectangle> rectangles;
    rectangles.reserve(bands.size());
    for (const Band* band : bands) {
        rectangles.push_back(rectangleOf(*band, grid));
    }
    PixelRectangle extent{0, 0, std::ceil(rectangles[base].width),
                          std::ceil(rectangles[base].height)};
    for (std::size_t i = 0; i < bands.size(); ++i) {
        extent = extended(extent, rectangles[i], *bands[i]);
    }
    const PixelRectangle requested = part ? rectangleOf(*part, grid) : extent;
    const PixelRectangle shown = intersection(wholePixels(requested), extent);
    if (!(shown.width >= 1 && shown.height >= 1)) {
        refuseEmptyPart(grid, extent);
    }
    if (!(shown.width < kLargestSide && shown.height < kLargestSide)) {
        throw Failure(ExitCode::Usage, "the raster would have more pixels than fit into a file");
    }
    for (PixelRectangle& each : rectangles) {
        each.x -= shown.x;
        each.y -= shown.y;
    }
    return {grid,
            {static_cast<int>(shown.width), static_cast<int>(shown.height)},
            grid.geoTransform(shown.x, shown.y),
            base,
            reachesBeyond(requested, extent),
            std::move(rectangles)};
}

OutputRaster rasterOf(const std::vector<const Band*>& bands, const std::string& path,
                      const GridOptions& options, const std::optional<ScenePart>& part) {
    const SharedGrid shared = gridOf(bands, options, part);
    OutputRaster raster;
    raster.path = path;
    raster.coordinateSystem = *bands.front()->georeference->coordinateSystem;
    raster.pixelWidth = shared.grid.pixelWidth();
    raster.pixelHeight = shared.grid.pixelHeight();
    for (std::size_t i = 0; i < bands.size(); ++i) {
        raster.bands.push_back({*bands[i], shared.rectangles[i], sourceOf(*bands[i])});
    }
    raster.size = shared.size;
    raster.isCut = shared.isCut;
    raster.geoTransform = shared.geoTransform;
    return raster;
}

std::string unitOf(const Band& band) {
    OGRSpatialReference system;
    if (!band.georeference ||
        system.importFromWkt(band.georeference->coordinateSystem->c_str()) != OGRERR_NONE) {
        return "";
    }
    return kestms::unitOf(system);
}

std::string withLabel(const std::string& path, const std::string& label) {
    const std::filesystem::path whole(path);
    std::filesystem::path name = whole.stem();
    name += label;
    name += whole.extension();
    return (whole.parent_path() / name).string();
}

std::string countOf(std::ptrdiff_t bands) {
    return std::to_string(bands) + (bands == 1 ? " band" : " bands");
}

}  // namespace

Pyxis::RasterSource sourceOf(const Band& band) {
    throwIfInterrupted();
    const auto source = Pyxis::rasterSourceOf(band.componentPath, band.componentFrame);
    if (!source) {
        throw Failure(ExitCode::CannotRead, band.componentPath, "the band cannot be opened");
    }
    return *source;
}

bool OutputBand::hasOtherPixelSize() const {
    return std::abs(rectangle.width - band.width) > kPositionStep * band.width ||
           std::abs(rectangle.height - band.height) > kPositionStep * band.height;
}

bool OutputBand::isOnGrid() const {
    return !hasOtherPixelSize() && isWhole(rectangle.x) && isWhole(rectangle.y);
}

std::optional<ScenePart> requestedPart(const std::vector<Band>& bands, const GridOptions& options) {
    if (options.box) {
        const auto& [west, south, east, north] = *options.box;
        return ScenePart{{{west, north}, {east, north}, {west, south}, {east, south}}};
    }
    if (!options.window) {
        return {};
    }
    const auto& [column, row, width, height] = *options.window;
    if (!(width >= 1 && height >= 1)) {
        throw Failure(ExitCode::Usage, kHoldsNothing);
    }
    const std::array<double, 6> place = sharedGrid(bands, options).geoTransform;
    const auto world = [&place](double x, double y) {
        return Pyxis::Point2d{place[0] + x * place[1] + y * place[2],
                              place[3] + x * place[4] + y * place[5]};
    };
    return ScenePart{world(column, row), world(column + width, row), world(column, row + height),
                     world(column + width, row + height)};
}

SharedGrid sharedGrid(const std::vector<Band>& bands, const GridOptions& options) {
    std::vector<const Band*> all;
    all.reserve(bands.size());
    for (const Band& band : bands) {
        all.push_back(&band);
    }
    return gridOf(all, options, {});
}

std::string unitOf(const OGRSpatialReference& system) {
    const bool inMetres = system.IsProjected() != FALSE && system.GetLinearUnits() == 1.0;
    return inMetres ? "m" : system.IsGeographic() != FALSE ? "deg" : "";
}

std::string pixelSizeLabel(const Band& band, const std::string& unit) {
    const PixelGrid grid(band);
    const auto rounded = [](double size) {
        constexpr double kDigits = 1e5;
        const double scale = kDigits / std::pow(10.0, std::ceil(std::log10(size)));
        return numberText(std::round(size * scale) / scale);
    };
    const std::string width = rounded(grid.pixelWidth());
    const std::string height = rounded(grid.pixelHeight());
    return (width == height ? width : width + "x" + height) + unit;
}

std::vector<OutputRaster> layOut(const std::vector<Band>& bands, const std::string& path,
                                 const GridOptions& options, const std::optional<ScenePart>& part) {
    struct Group {
        std::string label;
        std::vector<const Band*> bands;
    };
    std::vector<Group> groups;
    for (const Band& band : bands) {
        const std::string label = options.split ? "_" + pixelSizeLabel(band, unitOf(band)) : "";
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&label](const Group& each) { return each.label == label; });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), {label, {}});
        }
        group->bands.push_back(&band);
    }
    std::vector<OutputRaster> rasters;
    rasters.reserve(groups.size());
    for (const Group& group : groups) {
        rasters.push_back(rasterOf(group.bands, withLabel(path, group.label), options, part));
    }
    return rasters;
}

std::string cutNote(const OutputRaster& raster) {
    return raster.isCut ? "the part asked for is cut off where the scene ends" : "";
}

std::string resamplingNote(const OutputRaster& raster, const std::string& method) {
    const auto& bands = raster.bands;
    const auto resampled = std::count_if(bands.begin(), bands.end(), [](const OutputBand& each) {
        return each.hasOtherPixelSize();
    });
    const auto moved = std::count_if(bands.begin(), bands.end(), [](const OutputBand& each) {
        return !each.hasOtherPixelSize() && !each.isOnGrid();
    });
    std::string text;
    if (resampled > 0) {
        text = countOf(resampled) + " resampled (" + method + ")";
    }
    if (moved > 0) {
        text += (text.empty() ? "" : ", ") + countOf(moved) + " moved by parts of a pixel (" +
                method + ")";
    }
    if (text.empty()) {
        return {};
    }
    const std::string width = sizeText(raster.pixelWidth);
    const std::string height = sizeText(raster.pixelHeight);
    const std::string unit = unitOf(bands.front().band);
    return "one grid of " + (width == height ? width : width + " x " + height) +
           (unit.empty() ? "" : " " + unit) + ": " + text;
}

}  // namespace kestms
