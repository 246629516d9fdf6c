#pragma once

#include <iosfwd>
#include <memory>

namespace CLI {
class App;
}

namespace kestms {

class Context;

/// The command line with all its commands. Parsing it puts what was asked for into `context`, which
/// must outlive it.
std::unique_ptr<CLI::App> commandLine(Context& context);

/// The tool: parses the command line, runs the command and answers the process's exit code.
/// Errors go to `err`, each in one line.
int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace kestms
