#include "tool/terminal/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <utility>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// How long a command may take to end by itself: parsing and GDAL cannot be interrupted.
constexpr int kGraceMilliseconds = 300;

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t wakeUp = -1;  ///< descriptor that wakes the watcher

extern "C" void noteInterrupt(int /*signal*/) {
    const int before = errno;
    interrupted = 1;
    const char byte = 0;
    if (write(wakeUp, &byte, 1) < 0) {
        // Without a watcher the flag alone must do.
    }
    errno = before;
}

/// Waits for an interrupt, then for the end of the guard; ends the process if that takes too long.
void watch(int descriptor, const std::function<void()>& cleanUp) {
    char byte = 0;
    ssize_t count = 0;
    while ((count = read(descriptor, &byte, 1)) < 0 && errno == EINTR) {
    }
    pollfd end{descriptor, 0, 0};
    if (count == 1 && poll(&end, 1, kGraceMilliseconds) == 0) {
        if (cleanUp) {
            cleanUp();
        }
        constexpr std::string_view kMessage = "kestms: interrupted\n";
        static_cast<void>(!write(STDERR_FILENO, kMessage.data(), kMessage.size()));
        _exit(static_cast<int>(ExitCode::Interrupted));
    }
    close(descriptor);
}

}  // namespace

InterruptGuard::InterruptGuard(std::function<void()> cleanUp) {
    interrupted = 0;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    endOfWatch_ = ends[1];
    wakeUp = ends[1];
    // The watcher blocks signals: they must wake a command that waits for input.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    watcher_ = std::thread(watch, ends[0], std::move(cleanUp));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &previous_[i]);
        struct sigaction action {};
        action.sa_handler = kSignals[i] == SIGXFSZ ? SIG_IGN : noteInterrupt;
        action.sa_flags = 0;  // no SA_RESTART: a command that waits for input wakes up
        if (previous_[i].sa_handler != SIG_IGN) {
            sigaction(kSignals[i], &action, nullptr);
        }
    }
}

InterruptGuard::~InterruptGuard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &previous_[i], nullptr);
    }
    wakeUp = -1;
    close(endOfWatch_);
    watcher_.join();
    interrupted = 0;
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
