#pragma once

namespace kestms {

/// Turns SIGINT and SIGTERM into a flag for as long as it lives, so that a command can give back
/// what it holds. A second signal ends the process at once.
class InterruptGuard {
  public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();
};

/// Whether such a signal has arrived.
bool isInterrupted();

/// Throws a Failure with ExitCode::Interrupted when one has. Long operations call it now and then.
void throwIfInterrupted();

}  // namespace kestms
