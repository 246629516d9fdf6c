#pragma once

#include <stdexcept>
#include <string>

namespace kestms {

/// Exit codes of the tool, as in `kestms --help`.
enum class ExitCode : int {
    Success = 0,
    NotDecodable = 1,  ///< the files do not make a set
    Usage = 2,
    CannotRead = 3,
    CannotWrite = 4,
    Unexpected = 5,
    Interrupted = 130,
};

/// Ends a command. Its text is the one line that the user sees, safe for a terminal: the file, if
/// any, and the reason.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& reason);
    Failure(ExitCode code, const std::string& file, const std::string& reason);

    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

}  // namespace kestms
