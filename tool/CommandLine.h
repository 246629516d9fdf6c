#pragma once

#include <iosfwd>

namespace kestms {

/// The tool: parses the command line, runs the command and answers the process's exit code.
/// Errors go to `err`, each in one line.
int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace kestms
