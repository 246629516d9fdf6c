#include "tool/manual/CommandText.h"

#include <CLI/CLI.hpp>
#include <sstream>

#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

/// Checked values show in the type's name as "TEXT:{this,that}".
OptionText optionText(const CLI::Option& option) {
    OptionText text;
    for (const std::string& name : option.get_snames()) {
        text.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        text.names.push_back("--" + name);
    }
    text.help = option.get_description();
    if (option.get_type_size() == 0) {
        return text;
    }
    text.value = option.get_type_name();
    const auto open = text.value.find('{');
    const auto close = text.value.rfind('}');
    if (open != std::string::npos && close != std::string::npos && open < close) {
        std::istringstream choices(text.value.substr(open + 1, close - open - 1));
        for (std::string choice; std::getline(choices, choice, ',');) {
            text.choices.push_back(choice);
        }
        text.value = joined(text.choices, "|");
    }
    return text;
}

}  // namespace

CommandText textOf(const CLI::App& app) {
    CommandText text{app.get_name(), app.get_description(), {}, app.get_footer(), {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) {
            const bool several = option->get_items_expected_max() > 1;
            text.arguments += (text.arguments.empty() ? "" : " ") + option->get_name(true) +
                              (several ? "..." : "");
        } else if (!option->get_group().empty()) {
            text.options.push_back(optionText(*option));
        }
    }
    for (const CLI::App* command : app.get_subcommands({})) {
        if (!command->get_group().empty()) {
            text.commands.push_back(textOf(*command));
        }
    }
    return text;
}

}  // namespace kestms
