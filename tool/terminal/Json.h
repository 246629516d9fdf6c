#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

namespace kestms {

/// Members keep the order in which they are written.
using Json = nlohmann::ordered_json;

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
