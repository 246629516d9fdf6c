#include "tool/commands/HelpCommand.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <ostream>
#include <vector>

namespace kestms {
namespace {

/// The edit distance between two words.
std::size_t distance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t change = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
    const std::vector<const CLI::App*> commands = app.get_subcommands({});
    const auto found =
        std::find_if(commands.begin(), commands.end(),
                     [&name](const CLI::App* command) { return command->get_name() == name; });
    return found == commands.end() ? nullptr : *found;
}

}  // namespace

std::string noSuchCommand(const CLI::App& app, const std::string& word) {
    constexpr std::size_t kLongestWord = 32;
    constexpr std::size_t kMostDifferent = 2;
    std::string nearest;
    std::size_t least = kMostDifferent + 1;
    for (const CLI::App* command : app.get_subcommands({})) {
        const std::size_t away = distance(word.substr(0, kLongestWord), command->get_name());
        if (away < std::min(least, command->get_name().size())) {
            least = away;
            nearest = command->get_name();
        }
    }
    return word + ": no such command" + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

void addHelpCommand(CLI::App& app, Context& context) {
    auto name = std::make_shared<std::string>();
    CLI::App* help = app.add_subcommand("help", "Show the help of a command");
    help->add_option("COMMAND", *name, "The command (default: all of them)");
    help->callback([&app, &context, name] {
        context.action = [&app, &context, name] {
            const CLI::App* command = name->empty() ? &app : commandNamed(app, *name);
            if (command == nullptr) {
                throw Failure(ExitCode::Usage, noSuchCommand(app, *name) + " (see kestms help)");
            }
            context.out << app.get_formatter()->make_help(
                command, (name->empty() ? "kestms" : "kestms " + *name),
                CLI::AppFormatMode::Normal);
            return ExitCode::Success;
        };
    });
}

}  // namespace kestms
