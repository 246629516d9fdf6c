#include "tool/raster/Footprint.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/PixelGrid.h"

namespace kestms {
namespace {

using Pyxis::Point2d;
using Ring = Footprint::Ring;

/// Lines between points of an edge. The edge of a scene of 200 km strays less than 2 m from them.
constexpr int kSegments = 32;
constexpr double kTurn = 360.0;
constexpr double kHalfTurn = 180.0;
constexpr double kPole = 90.0;
/// A centimetre on the ground.
constexpr double kPrecision = 1e7;

/// The corners of the rectangle that holds all bands, and points between them, counter-clockwise
/// for a raster with north up.
Ring outlineOf(const std::vector<Band>& bands) {
    const auto area = [](const Band& band) { return PixelGrid(band).pixelArea(); };
    const PixelGrid grid(
        *std::min_element(bands.begin(), bands.end(),
                          [&area](const Band& a, const Band& b) { return area(a) < area(b); }));
    Point2d first = grid.toRaster(grid.toWorld(0, 0));
    Point2d last = first;
    for (const Band& band : bands) {
        const Georeference& place = *band.georeference;
        for (const Point2d& corner :
             {place.upperLeft, place.upperRight, place.lowerLeft, place.lowerRight}) {
            const Point2d at = grid.toRaster(corner);
            first = {std::min(first.x, at.x), std::min(first.y, at.y)};
            last = {std::max(last.x, at.x), std::max(last.y, at.y)};
        }
    }
    const std::array<Point2d, 4> corners = {first, {first.x, last.y}, last, {last.x, first.y}};
    Ring ring;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point2d& from = corners[i];
        const Point2d& to = corners[(i + 1) % corners.size()];
        for (int step = 0; step < kSegments; ++step) {
            const double part = static_cast<double>(step) / kSegments;
            ring.push_back(
                grid.toWorld(from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)));
        }
    }
    return ring;
}

/// An empty system for an empty text or one that GDAL does not understand.
OGRSpatialReference systemOf(const std::string& wkt) {
    OGRSpatialReference system;
    if (system.importFromWkt(wkt.c_str()) != OGRERR_NONE) {
        system.Clear();
    }
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return system;
}

/// Transforms to degrees, in place; false on failure.
bool toDegrees(Ring& ring, const std::string& wkt) {
    const Pyxis::ErrorCapture silent;
    const OGRSpatialReference system = systemOf(wkt);
    const OGRSpatialReference degrees = systemOf(SRS_WKT_WGS84_LAT_LONG);
    if (!system.IsProjected() && !system.IsGeographic()) {
        return false;
    }
    const std::unique_ptr<OGRCoordinateTransformation> transformation(
        OGRCreateCoordinateTransformation(&system, &degrees));
    return transformation && std::all_of(ring.begin(), ring.end(), [&](Point2d& point) {
               return transformation->Transform(1, &point.x, &point.y) && std::isfinite(point.x) &&
                      std::isfinite(point.y) && std::abs(point.y) <= kPole;
           });
}

double turnsBetween(double from, double to) {
    return kTurn * std::round((from - to) / kTurn);
}

/// Removes jumps between longitudes, from the first one within -180 and 180 degrees. Returns how
/// far the ring winds around: 0, or 360 degrees either way around a pole.
double unwrap(Ring& ring) {
    double last = 0;
    for (Point2d& point : ring) {
        point.x += turnsBetween(last, point.x);
        last = point.x;
    }
    return turnsBetween(last, ring.front().x);
}

/// The part of the ring on one side of a meridian.
Ring clipped(const Ring& ring, double meridian, bool west) {
    const auto inside = [=](const Point2d& point) {
        return west ? point.x <= meridian : point.x >= meridian;
    };
    Ring kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2d& from = ring[i];
        const Point2d& to = ring[(i + 1) % ring.size()];
        if (inside(from)) {
            kept.push_back(from);
        }
        if (inside(from) != inside(to)) {
            const double part = (meridian - from.x) / (to.x - from.x);
            kept.push_back({meridian, from.y + part * (to.y - from.y)});
        }
    }
    return kept;
}

void move(Ring& ring, double degrees) {
    for (Point2d& point : ring) {
        point.x += degrees;
    }
}

/// A ring around a pole, laid out flat: along all longitudes, and back over the pole.
Ring aroundPole(Ring ring, double winding) {
    if (winding < 0) {
        std::reverse(ring.begin(), ring.end());
        unwrap(ring);
    }
    const double pole = ring.front().y > 0 ? kPole : -kPole;
    const Ring once = ring;
    for (const int turn : {-1, 1}) {
        Ring copy = once;
        move(copy, turn * kTurn);
        ring.insert(turn < 0 ? ring.begin() : ring.end(), copy.begin(), copy.end());
    }
    // Far beyond both ends the line is closed over the pole, then cut to one turn.
    ring.push_back({ring.back().x, pole});
    ring.push_back({ring.front().x, pole});
    return clipped(clipped(ring, -kHalfTurn, false), kHalfTurn, true);
}

double signedArea(const Ring& ring) {
    double area = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2d& from = ring[i];
        const Point2d& to = ring[(i + 1) % ring.size()];
        area += from.x * to.y - to.x * from.y;
    }
    return area;
}

/// Removes points on the line between their neighbours.
Ring simplified(const Ring& ring) {
    Ring kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2d& before = kept.empty() ? ring.back() : kept.back();
        const Point2d& here = ring[i];
        const Point2d& after = ring[(i + 1) % ring.size()];
        const double x = after.x - before.x;
        const double y = after.y - before.y;
        const double off = (here.x - before.x) * y - (here.y - before.y) * x;
        if (std::abs(off) > std::hypot(x, y) / kPrecision) {
            kept.push_back(here);
        }
    }
    return kept;
}

/// Rounded, counter-clockwise and closed; empty for a part without extent.
Ring finished(Ring ring) {
    for (Point2d& point : ring) {
        point = {std::round(point.x * kPrecision) / kPrecision,
                 std::round(point.y * kPrecision) / kPrecision};
    }
    ring = simplified(ring);
    if (ring.size() < 3) {
        return {};
    }
    if (signedArea(ring) < 0) {
        std::reverse(ring.begin(), ring.end());
    }
    ring.push_back(ring.front());
    return ring;
}

std::array<double, 4> boxAround(const std::vector<Ring>& parts) {
    const Point2d& start = parts.front().front();
    std::array<double, 4> box = {start.x, start.y, start.x, start.y};
    for (const Ring& ring : parts) {
        for (const Point2d& point : ring) {
            box = {std::min(box[0], point.x), std::min(box[1], point.y), std::max(box[2], point.x),
                   std::max(box[3], point.y)};
        }
    }
    return box;
}

/// The parts of a ring on both sides of the antimeridian.
Footprint cut(Ring ring) {
    const auto byLongitude = [](const Point2d& a, const Point2d& b) { return a.x < b.x; };
    const auto [west, east] = std::minmax_element(ring.begin(), ring.end(), byLongitude);
    const double width = east->x - west->x;
    move(ring, -kTurn * std::floor((west->x + kHalfTurn) / kTurn));
    Footprint footprint;
    for (const bool isWest : {true, false}) {
        Ring part = clipped(ring, kHalfTurn, isWest);
        move(part, isWest ? 0 : -kTurn);
        if (Ring done = finished(std::move(part)); !done.empty()) {
            footprint.parts.push_back(std::move(done));
        }
    }
    if (footprint.parts.empty()) {
        return footprint;
    }
    footprint.box = boxAround(footprint.parts);
    if (footprint.parts.size() == 2 && width < kTurn) {
        footprint.box[0] = boxAround({footprint.parts[0]})[0];
        footprint.box[2] = boxAround({footprint.parts[1]})[2];
    }
    return footprint;
}

}  // namespace

double metresPerUnit(const std::string& wkt) {
    const Pyxis::ErrorCapture silent;
    const OGRSpatialReference system = systemOf(wkt);
    return system.IsProjected()    ? system.GetLinearUnits()
           : system.IsGeographic() ? system.GetAngularUnits() * system.GetSemiMajor()
                                   : 0;
}

std::optional<Footprint> footprintOf(const std::vector<Band>& bands) {
    if (bands.empty()) {
        return std::nullopt;
    }
    Ring ring = outlineOf(bands);
    // All bands of a set share one system.
    if (!toDegrees(ring, *bands.front().georeference->coordinateSystem)) {
        return std::nullopt;
    }
    const double winding = unwrap(ring);
    Footprint footprint =
        cut(winding == 0 ? std::move(ring) : aroundPole(std::move(ring), winding));
    return footprint.parts.empty() ? std::nullopt : std::optional(std::move(footprint));
}

}  // namespace kestms
