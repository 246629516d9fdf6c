#include "tool/terminal/Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <string>

#include "tool/terminal/Interrupt.h"

namespace kestms {

namespace {

constexpr int kWhole = 100;
constexpr int kBarWidth = 40;
constexpr const char* kEraseLine = "\r\x1b[K";

}  // namespace

bool isTerminal(const std::ostream& stream) {
    return &stream == &std::cerr && isatty(STDERR_FILENO) != 0;
}

std::size_t terminalColumns(const std::ostream& stream) {
    winsize size{};
    const bool known = &stream == &std::cout && isatty(STDOUT_FILENO) != 0 &&
                       ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0;
    return known ? size.ws_col : 0;
}

ProgressBar::~ProgressBar() {
    if (percent_ >= 0) {
        stream_ << kEraseLine << std::flush;
    }
}

void ProgressBar::show(double part) {
    throwIfInterrupted();
    const int percent = static_cast<int>(std::clamp(part, 0.0, 1.0) * kWhole);
    if (!shown_ || percent == percent_) {
        return;
    }
    percent_ = percent;
    const auto done = static_cast<std::size_t>(percent * kBarWidth / kWhole);
    stream_ << '\r' << '[' << std::string(done, '#') << std::string(kBarWidth - done, '.') << "] "
            << std::setw(3) << percent << " %" << std::flush;
}

}  // namespace kestms
