#pragma once

#include <csignal>

#include <array>
#include <functional>
#include <thread>

namespace kestms {

/// Turns SIGINT, SIGTERM and SIGHUP into a flag for as long as it lives, so that a command can give
/// back what it holds; those that were ignored stay so. A command that has not ended soon after is
/// ended, whatever it is doing. A second signal ends the process at once. A file that grows past
/// its limit becomes an error of the write (SIGXFSZ is ignored).
class InterruptGuard {
  public:
    /// `cleanUp` is called, on another thread, before the process is ended.
    explicit InterruptGuard(std::function<void()> cleanUp = {});
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

  private:
    static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGXFSZ};

    std::array<struct sigaction, kSignals.size()> previous_{};
    int endOfWatch_ = -1;  ///< the writing end of the watcher's pipe
    std::thread watcher_;
};

/// Whether such a signal has arrived.
bool isInterrupted();

/// Throws a Failure with ExitCode::Interrupted when one has. Long operations call it now and then.
void throwIfInterrupted();

}  // namespace kestms
