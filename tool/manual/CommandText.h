#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

// The texts of the command line, taken from the parser, so that manual pages, completions and
// --help cannot differ.

namespace kestms {

struct OptionText {
    std::vector<std::string> names;    ///< as typed, such as "-o" and "--output"
    std::string value;                 ///< what follows it, such as "TEXT"; empty for a flag
    std::vector<std::string> choices;  ///< the possible values, if there is a fixed set
    std::string help;
};

struct CommandText {
    std::string name;       ///< such as "info"; "kestms" for the program itself
    std::string help;       ///< one line
    std::string arguments;  ///< such as "SET|FILE..."; empty if there are none
    std::string footer;     ///< more help, in blocks separated by empty lines
    std::vector<OptionText> options;
    std::vector<CommandText> commands;
};

CommandText textOf(const CLI::App& app);

}  // namespace kestms
