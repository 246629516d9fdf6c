#pragma once

#include <cstddef>
#include <functional>
#include <ostream>

namespace kestms {

/// Whether people watch the stream: it is standard error, and that is a terminal.
bool isTerminal(const std::ostream& stream);

/// The columns of the terminal that shows standard output; 0 when the stream is another, or no
/// terminal.
std::size_t terminalColumns(const std::ostream& stream);

/// Told how much of the work is done, 0 to 1; what it throws ends the work.
using ProgressFunction = std::function<void(double)>;

/// A bar on one line that grows with the work and goes when the work ends, one way or another.
class ProgressBar {
  public:
    ProgressBar(std::ostream& stream, bool shown) : stream_(stream), shown_(shown) {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    /// `part` of the work is done, 0 to 1. Throws a Failure with ExitCode::Interrupted when the
    /// user has interrupted the command.
    void show(double part);

  private:
    std::ostream& stream_;
    bool shown_;
    int percent_ = -1;
};

}  // namespace kestms
