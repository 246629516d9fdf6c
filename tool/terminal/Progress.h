#pragma once

#include <cstddef>
#include <functional>
#include <ostream>

namespace kestms {

/// Whether the stream is standard error on a terminal.
bool isTerminal(const std::ostream& stream);

/// The columns of the terminal if the stream is standard output on a terminal, else 0.
std::size_t terminalColumns(const std::ostream& stream);

/// Called with the part of the work that is done, 0 to 1; an exception ends the work.
using ProgressFunction = std::function<void(double)>;

/// A progress bar on one line, removed on destruction.
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
