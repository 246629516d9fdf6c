#include "host/raster/GeoFacts.h"

#include <algorithm>
#include <cmath>

namespace Pyxis {
namespace {

double determinant(const GeoTransform& t) {
    return t[1] * t[5] - t[2] * t[4];
}

}  // namespace

Point2d GeoFacts::at(double column, double row) const {
    return {transform[0] + column * transform[1] + row * transform[2],
            transform[3] + column * transform[4] + row * transform[5]};
}

Vector2d GeoFacts::pixelSize() const {
    return {std::hypot(transform[1], transform[4]), std::hypot(transform[2], transform[5])};
}

bool GeoFacts::mirrored() const {
    return determinant(transform) > 0;
}

double GeoFacts::rotation() const {
    const double angle = std::atan2(transform[4], transform[1]);
    return mirrored() ? -angle : angle;
}

bool GeoFacts::rotationDeterminesCorners() const {
    constexpr double kMostPixelsOff = 1e-3;
    const Vector2d size = pixelSize();
    const double angle = rotation();
    const double sign = mirrored() ? -1.0 : 1.0;
    // A line upward, scaled after its rotation, as the set codec computes it.
    const double x = -size.x * std::sin(angle);
    const double y = sign * size.y * std::cos(angle);
    const double right = sign * size.y * std::sin(angle);
    const double off = std::max(std::hypot(x + transform[2], y + transform[5]) * height,
                                std::abs(right - transform[4]) * width);
    return off <= kMostPixelsOff * std::min(size.x, size.y);
}

std::shared_ptr<const GeoFacts> readGeoFacts(const PlaceFacts& place, std::int32_t width,
                                             std::int32_t height, const DatasetOpener& open) {
    auto facts = std::make_shared<GeoFacts>();
    if (place.transform) {
        facts->transform = *place.transform;
    } else {
        const Dataset* dataset = open();
        const auto transform = dataset != nullptr ? dataset->transform() : std::nullopt;
        if (!transform) {
            return nullptr;
        }
        facts->transform = *transform;
    }
    // Formats that always have a transform return this one when they know none.
    constexpr GeoTransform kUnknown = {0, 1, 0, 0, 0, 1};
    if (facts->transform == kUnknown) {
        return nullptr;
    }
    const double area = determinant(facts->transform);
    if (!std::isfinite(area) || area == 0.0 || !std::isfinite(facts->transform[0]) ||
        !std::isfinite(facts->transform[3])) {
        return nullptr;
    }
    facts->width = width;
    facts->height = height;
    facts->system = coordinateSystemOf(place, open);
    return facts->system.valid() ? facts : nullptr;
}

}  // namespace Pyxis
