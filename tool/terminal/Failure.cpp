#include "tool/terminal/Failure.h"

#include "tool/terminal/TerminalText.h"

namespace kestms {

Failure::Failure(ExitCode code, const std::string& reason)
    : std::runtime_error(printable(reason)), code_(code) {}

Failure::Failure(ExitCode code, const std::string& file, const std::string& reason)
    : std::runtime_error(fileMessage(file, reason)), code_(code) {}

}  // namespace kestms
