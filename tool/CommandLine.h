#pragma once

#include <iosfwd>
#include <memory>

namespace CLI {
class App;
}

namespace kestms {

class Context;

/// The command line with all its commands. Parsing it fills `context`, which must outlive it.
std::unique_ptr<CLI::App> commandLine(Context& context);

/// The tool: parses the command line, runs the command and returns the exit code. Writes errors to
/// `err`, one line each.
int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace kestms
