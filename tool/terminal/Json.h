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

/// For programs: indented UTF-8; invalid bytes become U+FFFD, and characters that would control a
/// terminal are escaped.
inline std::string jsonText(const Json& value) {
    return printableJson(value.dump(2, ' ', false, Json::error_handler_t::replace));
}

inline void writeJson(std::ostream& out, const Json& document) {
    out << jsonText(document) << '\n';
}

/// Writes an array as the last member of a document that has others. Its elements are made one at a
/// time: there can be a hundred thousand.
template <typename Items, typename ToJson>
void writeJson(std::ostream& out, const Json& document, const std::string& member,
               const Items& items, ToJson toJson) {
    const auto writeIndented = [&out](const std::string& text) {
        std::size_t start = 0;
        for (std::size_t end = 0; end != text.npos; start = end + 1) {
            end = text.find('\n', start);  // strings have theirs escaped
            out << "\n    " << std::string_view(text).substr(start, end - start);
        }
    };
    std::string head = jsonText(document);
    head.erase(head.rfind("\n}"));
    out << head << ",\n  \"" << member << "\": [";
    const char* separator = "";
    for (const auto& item : items) {
        out << separator;
        writeIndented(jsonText(toJson(item)));
        separator = ",";
    }
    out << (items.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

}  // namespace kestms
