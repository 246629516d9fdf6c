#include "tool/terminal/Interrupt.h"

#include <array>
#include <csignal>
#include <cstddef>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM};

volatile std::sig_atomic_t interrupted = 0;
std::array<struct sigaction, kSignals.size()> previous{};

extern "C" void noteInterrupt(int /*signal*/) {
    interrupted = 1;
}

}  // namespace

InterruptGuard::InterruptGuard() {
    interrupted = 0;
    struct sigaction action {};
    action.sa_handler = noteInterrupt;
    // No SA_RESTART: a command that waits for input wakes up.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &previous[i]);
    }
}

InterruptGuard::~InterruptGuard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &previous[i], nullptr);
    }
}

bool isInterrupted() {
    return interrupted != 0;
}

void throwIfInterrupted() {
    if (isInterrupted()) {
        throw Failure(ExitCode::Interrupted, "interrupted");
    }
}

}  // namespace kestms
