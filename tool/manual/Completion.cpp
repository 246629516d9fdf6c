#include "tool/manual/Completion.h"

#include <utility>

#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

std::string commandNames(const CommandText& program, const std::string& separator) {
    std::vector<std::string> names;
    for (const CommandText& command : program.commands) {
        names.push_back(command.name);
    }
    return joined(names, separator);
}

std::string optionNames(const CommandText& command) {
    std::vector<std::string> names;
    for (const OptionText& option : command.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return joined(names, " ");
}

/// `text` with a backslash before each of the characters in `special`.
std::string escapedFor(const std::string& text, const std::string& special) {
    std::string result;
    for (const char character : text) {
        if (special.find(character) != std::string::npos) {
            result += '\\';
        }
        result += character;
    }
    return result;
}

/// Within single quotes of a POSIX shell.
std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char character : text) {
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return result + "'";
}

/// fish takes a backslash within single quotes.
std::string fishQuoted(const std::string& text) {
    return "'" + escapedFor(text, "\\'") + "'";
}

/// The cases "COMMAND OPTION" with a fixed set of values; options of the program apply to every
/// command.
std::string bashChoices(const CommandText& command, const std::string& name) {
    std::string cases;
    for (const OptionText& option : command.options) {
        for (const std::string& spelling : option.names) {
            if (!option.choices.empty()) {
                cases.append("        ").append(name).append("' ").append(spelling);
                cases.append("') choices=").append(quoted(joined(option.choices, " ")));
                cases += " ;;\n";
            }
        }
    }
    return cases;
}

std::string zshOptions(const CommandText& command, const std::string& indent) {
    std::string result;
    for (const OptionText& option : command.options) {
        std::string value;
        if (!option.choices.empty()) {
            value = ":value:(" + joined(option.choices, " ") + ")";
        } else if (!option.value.empty()) {
            value = ":value:_files";
        }
        for (const std::string& name : option.names) {
            std::string described = name;
            described.append("[").append(escapedFor(option.help, ":[]")).append("]").append(value);
            result.append(" \\\n").append(indent).append(quoted(std::as_const(described)));
        }
    }
    return result;
}

std::string fishOptions(const CommandText& command, const std::string& condition) {
    std::string result;
    for (const OptionText& option : command.options) {
        result += "complete -c kestms" + condition;
        for (const std::string& name : option.names) {
            result += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        }
        if (!option.choices.empty()) {
            result += " -x -a " + quoted(joined(option.choices, " "));
        } else if (!option.value.empty()) {
            result += " -r";
        }
        result += " -d " + fishQuoted(option.help) + "\n";
    }
    return result;
}

}  // namespace

std::string bashCompletion(const CommandText& program) {
    std::string words =
        "        '') words=" + quoted(commandNames(program, " ") + " " + optionNames(program)) +
        " ;;\n";
    std::string choices = bashChoices(program, "*");
    for (const CommandText& command : program.commands) {
        words += "        " + command.name + ") words=" + quoted(optionNames(command)) + " ;;\n";
        choices += bashChoices(command, command.name);
    }
    return "# bash completion for kestms\n"
           "_kestms() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
           "    local word command= words= choices=\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD - 1}\"; do\n"
           "        case $word in\n"
           "        " +
           commandNames(program, " | ") +
           ") command=$word; break ;;\n"
           "        esac\n"
           "    done\n"
           "    case \"$command $before\" in\n" +
           choices +
           "    esac\n"
           "    case $command in\n" +
           words +
           "    esac\n"
           "    if [[ -n $choices ]]; then\n"
           "        words=$choices\n"
           "    elif [[ -n $command && $current != -* ]]; then\n"
           "        words=\n"
           "    fi\n"
           "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
           "}\n"
           "complete -o bashdefault -o default -F _kestms kestms\n";
}

std::string zshCompletion(const CommandText& program) {
    std::string names;
    std::string cases;
    for (const CommandText& command : program.commands) {
        names += "        " + quoted(command.name + ":" + escapedFor(command.help, ":")) + "\n";
        cases += "    " + command.name + ")\n        _arguments" +
                 zshOptions(command, "            ") + " \\\n            '*:file:_files'\n" +
                 "        ;;\n";
    }
    return "#compdef kestms\n"
           "local curcontext=$curcontext state line\n"
           "local -a commands=(\n" +
           names +
           ")\n"
           "_arguments -C" +
           zshOptions(program, "    ") +
           " \\\n    ':command:->command' '*::argument:->argument'\n"
           "case $state in\n"
           "command) _describe command commands ;;\n"
           "argument)\n"
           "    case $line[1] in\n" +
           cases +
           "    esac\n"
           "    ;;\n"
           "esac\n";
}

std::string fishCompletion(const CommandText& program) {
    std::string result = "# fish completion for kestms\n" + fishOptions(program, "");
    for (const CommandText& command : program.commands) {
        result += "complete -c kestms -n __fish_use_subcommand -f -a " + command.name + " -d " +
                  fishQuoted(command.help) + "\n" +
                  fishOptions(command, " -n '__fish_seen_subcommand_from " + command.name + "'");
    }
    return result;
}

}  // namespace kestms
