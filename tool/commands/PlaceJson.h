#pragma once

#include <string>

#include "pyxis/Geometry.h"
#include "tool/scene/Words.h"
#include "tool/terminal/Json.h"

namespace kestms {

/// World positions of four corners.
template <typename Corners>
Json cornersJson(const Corners& corners) {
    const auto point = [](const Pyxis::Point2d& at) { return Json::array({at.x, at.y}); };
    return {{"upperLeft", point(corners.upperLeft)},
            {"upperRight", point(corners.upperRight)},
            {"lowerLeft", point(corners.lowerLeft)},
            {"lowerRight", point(corners.lowerRight)}};
}

/// A coordinate system: its name, its EPSG code or null, and its WKT.
inline Json systemJson(int epsg, const std::string& wkt) {
    return {{"name", systemName(epsg, wkt)},
            {"epsg", epsg > 0 ? Json(epsg) : Json(nullptr)},
            {"wkt", wkt}};
}

}  // namespace kestms
