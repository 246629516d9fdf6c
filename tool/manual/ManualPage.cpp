#include "tool/manual/ManualPage.h"

#include <sstream>

namespace kestms {
namespace {

/// Escapes text for roff: a line that starts with "." or "'" would be a request.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const bool startsLine = result.empty() || result.back() == '\n';
        if (startsLine && (character == '.' || character == '\'')) {
            result += "\\&";
        }
        switch (character) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            default:
                result += character;
        }
    }
    return result;
}

std::string heading(const std::string& text) {
    std::string result = ".SH ";
    for (const char character : text) {
        const bool lower = character >= 'a' && character <= 'z';
        result += lower ? static_cast<char>(character - 'a' + 'A') : character;
    }
    return result + "\n";
}

std::string verbatim(const std::string& text) {
    return ".PP\n.nf\n" + escaped(text) + ".fi\n";
}

/// One block of a footer: "Examples:" and indented lines make a section, other indented lines
/// stay as they are, and the rest is a paragraph.
std::string block(const std::string& text) {
    const std::string first = text.substr(0, text.find('\n'));
    if (first.ends_with(':') && text.size() > first.size() + 1 && text[first.size() + 1] == ' ') {
        return heading(first.substr(0, first.size() - 1)) + verbatim(text.substr(first.size() + 1));
    }
    return text.find("\n ") != std::string::npos ? verbatim(text) : ".PP\n" + escaped(text);
}

std::string blocks(const std::string& footer) {
    std::istringstream lines(footer);
    std::string result;
    std::string current;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            current += line + "\n";
        } else if (!current.empty()) {
            result += block(current);
            current.clear();
        }
    }
    return current.empty() ? result : result + block(current);
}

/// The paragraphs of a footer are the description; its sections come after the options.
struct Footer {
    std::string description;
    std::string sections;
};

Footer footerOf(const CommandText& command) {
    const std::string all = blocks(command.footer);
    const std::size_t section = all.starts_with(".SH") ? 0 : all.find("\n.SH");
    if (section == std::string::npos) {
        return {all, {}};
    }
    const std::size_t start = section == 0 ? 0 : section + 1;
    return {all.substr(0, start), all.substr(start)};
}

std::string options(const CommandText& command) {
    std::string result = heading("Options");
    for (const OptionText& option : command.options) {
        result += ".TP\n";
        for (std::size_t i = 0; i < option.names.size(); ++i) {
            result += (i == 0 ? "\\fB" : ", \\fB") + escaped(option.names[i]) + "\\fR";
        }
        result += option.value.empty() ? "\n" : " \\fI" + escaped(option.value) + "\\fR\n";
        result += escaped(option.help) + "\n";
    }
    return result;
}

std::string start(const std::string& name, const CommandText& command, const std::string& synopsis,
                  const std::string& version) {
    std::string title = heading(name).substr(4);
    title.pop_back();
    return ".TH " + escaped(title) + " 1 \"\" \"kestms " + version + "\" \"User Commands\"\n" +
           heading("Name") + escaped(name) + " \\- " + escaped(command.help) + "\n" +
           heading("Synopsis") + synopsis + heading("Description") + escaped(command.help) + "\n";
}

}  // namespace

std::string programPage(const CommandText& program, const std::string& version) {
    const Footer footer = footerOf(program);
    std::string page =
        start(program.name, program,
              ".B " + program.name + "\n[\\fIOPTIONS\\fR] \\fICOMMAND\\fR ...\n", version) +
        footer.description + heading("Commands");
    std::string seeAlso = heading("See also");
    for (const CommandText& command : program.commands) {
        page += ".TP\n\\fB" + escaped(command.name) + "\\fR\n" + escaped(command.help) + "\n";
        seeAlso += ".BR " + program.name + "\\-" + escaped(command.name) + " (1)\n";
    }
    return page + options(program) + footer.sections + seeAlso;
}

std::string commandPage(const CommandText& program, const CommandText& command,
                        const std::string& version) {
    const Footer footer = footerOf(command);
    return start(program.name + "-" + command.name, command,
                 ".B " + program.name + " " + escaped(command.name) + "\n[\\fIOPTIONS\\fR] \\fI" +
                     escaped(command.arguments) + "\\fR\n",
                 version) +
           footer.description + options(command) + footer.sections + heading("See also") + ".BR " +
           program.name + " (1)\n";
}

}  // namespace kestms
