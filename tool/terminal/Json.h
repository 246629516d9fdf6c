#pragma once

#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "tool/terminal/NumberText.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {

/// Members keep the order in which they are written.
using Json = nlohmann::ordered_json;

/// The member with which every document begins, so that programs know what they read. The version
/// changes when a member is renamed, removed or gets another meaning; members are added freely.
inline Json documentOf(const char* name, int version) {
    return {{"schema", {{"name", name}, {"version", version}}}};
}

/// Null for an empty text.
inline Json textOrNull(std::string_view text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

/// JSON has no words for what is not a number; GDAL's are common.
inline Json numberOrWord(double value) {
    return std::isfinite(value) ? Json(value) : Json(numberText(value));
}

/// A document for programs: indented, UTF-8; bytes of a name that are no UTF-8 become
/// U+FFFD, and what would steer a terminal is escaped.
inline std::string jsonText(const Json& document) {
    return printableJson(document.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

inline void writeJson(std::ostream& out, const Json& document) {
    out << jsonText(document);
}

}  // namespace kestms
