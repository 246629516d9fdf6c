#pragma once

#include <csignal>

#include <array>
#include <functional>
#include <thread>

namespace kestms {

/// Turns SIGINT, SIGTERM and SIGHUP into a flag for its lifetime, so that a command can clean up;
/// ignored signals stay ignored. A command that does not end soon after is killed. Exceeding the
/// file size limit becomes a write error (SIGXFSZ is ignored).
class InterruptGuard {
  public:
    /// `cleanUp` is called on another thread before the process is killed.
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

/// Whether a signal has arrived.
bool isInterrupted();

/// Throws a Failure with ExitCode::Interrupted after a signal. Long operations call it regularly.
void throwIfInterrupted();

}  // namespace kestms
