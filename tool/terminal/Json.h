#pragma once

#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "tool/terminal/NumberText.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {

/// Members keep their order of insertion.
using Json = nlohmann::ordered_json;

/// A document with its first member, `schema`, by which programs recognise it. The version changes
/// when a member is renamed, removed or changes its meaning; new members do not change it.
inline Json documentOf(const char* name, int version) {
    return {{"schema", {{"name", name}, {"version", version}}}};
}

/// Null for an empty text.
inline Json textOrNull(std::string_view text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

/// JSON has no NaN or infinity; the words are GDAL's.
inline Json numberOrWord(double value) {
    return std::isfinite(value) ? Json(value) : Json(numberText(value));
}

/// A document for programs: indented UTF-8; invalid bytes become U+FFFD, and characters that would
/// control a terminal are escaped.
inline std::string jsonText(const Json& document) {
    std::string text = printableJson(document.dump(2, ' ', false, Json::error_handler_t::replace));
    text += '\n';
    return text;
}

inline void writeJson(std::ostream& out, const Json& document) {
    out << jsonText(document);
}

}  // namespace kestms
