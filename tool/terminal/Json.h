#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "pyxis/Geometry.h"
#include "tool/terminal/Words.h"

namespace kestms {

/// Members keep the order in which they are written.
using Json = nlohmann::ordered_json;

/// World positions of the corners of anything that has the four.
template <typename Corners>
Json cornersJson(const Corners& corners) {
    const auto point = [](const Pyxis::Point2d& at) { return Json::array({at.x, at.y}); };
    return {{"upperLeft", point(corners.upperLeft)},
            {"upperRight", point(corners.upperRight)},
            {"lowerLeft", point(corners.lowerLeft)},
            {"lowerRight", point(corners.lowerRight)}};
}

inline Json systemJson(int epsg, const std::string& wkt) {
    return {{"name", systemName(epsg, wkt)},
            {"epsg", epsg > 0 ? Json(epsg) : Json(nullptr)},
            {"wkt", wkt}};
}

/// Null for an empty text.
inline Json textOrNull(std::string_view text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

/// Writes a document for programs: indented, UTF-8; bytes of a name that are no UTF-8 become
/// U+FFFD.
inline void writeJson(std::ostream& out, const Json& document) {
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace kestms
