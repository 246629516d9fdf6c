#include "tool/commands/ExplanationReport.h"

#include "tool/scene/Words.h"
#include "tool/terminal/TerminalText.h"
#include "tool/terminal/TextTable.h"

namespace kestms {

std::string explanationText(const Explanation& explanation, std::size_t columns) {
    std::string text = "Naming scheme " + std::to_string(explanation.scheme) + " (" +
                       std::string(schemeWord(explanation.scheme)) + "): " + explanation.rule +
                       ".\n";
    for (const std::string& obstacle : explanation.obstacles) {
        text += "  " + printable(obstacle) + ".\n";
    }
    using Align = TextTable::Align;
    TextTable table({{"File", Align::Left, TextTable::Fit::KeepEnd},
                     {"Frame", Align::Right},
                     {"Shows", Align::Left},
                     {"Trailing number", Align::Right}});
    for (const ComponentScheme& each : explanation.components) {
        const int number = each.trailingBandNumber;
        table.addRow({each.component.path, std::to_string(each.component.frame),
                      std::string(schemeWord(each.kind)),
                      number < 0 ? "none" : std::to_string(number)});
    }
    return text + table.text(columns);
}

Json explanationJson(const Explanation& explanation) {
    Json components = Json::array();
    for (const ComponentScheme& each : explanation.components) {
        const int number = each.trailingBandNumber;
        components.push_back({{"file", each.component.path},
                              {"fileFrame", each.component.frame},
                              {"kind", schemeWord(each.kind)},
                              {"trailingNumber", number < 0 ? Json(nullptr) : Json(number)}});
    }
    return {{"rule", explanation.rule},
            {"obstacles", explanation.obstacles},
            {"components", std::move(components)}};
}

}  // namespace kestms
