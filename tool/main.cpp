#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "host/raster/Module.h"
#include "tool/CommandLine.h"
#include "tool/actions/RasterActions.h"

// The program itself does not use GDAL. Commands that need it run in the module, which parses the
// same command line again; until then nothing is read or written.

namespace {

bool needsModule = false;

/// Otherwise a pipe or a file gets the number of a closed stream, and what is printed to it.
void occupyClosedStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // Its use still fails.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

kestms::ExitCode leaveToModule() {
    needsModule = true;
    return kestms::ExitCode::Success;
}

int runModule(int argc, const char* const* argv) {
    const auto run = Pyxis::functionIn(KESTMS_MODULE, "kestmsRun");
    if (!run) {
        std::cerr << "kestms: " << run.refusal().reason << "\n";
        return static_cast<int>(kestms::ExitCode::Unexpected);
    }
    return reinterpret_cast<int (*)(int, const char* const*)>(*run)(argc, argv);
}

}  // namespace

namespace kestms {

ExitCode writeVirtualRasters(Context& /*context*/, const ExportRequest& /*request*/) {
    return leaveToModule();
}

ExitCode exportSet(Context& /*context*/, const ExportOptions& /*options*/) {
    return leaveToModule();
}

ExitCode drawPicture(Context& /*context*/, const QuicklookOptions& /*options*/) {
    return leaveToModule();
}

ExitCode writeStacItem(Context& /*context*/, const StacOptions& /*options*/) {
    return leaveToModule();
}

ExitCode writeSampleSets(Context& /*context*/, const SamplesOptions& /*options*/) {
    return leaveToModule();
}

}  // namespace kestms

int main(int argc, char** argv) {
    occupyClosedStreams();
    int code = kestms::run(argc, argv, std::cin, std::cout, std::cerr);
    if (needsModule) {
        code = runModule(argc, argv);
    }
#ifdef NDEBUG
    // All is written and closed. The finalisers of all the libraries of PROJ and GDAL would take
    // as long as a small command; debug builds run them, for leak checks and coverage.
    std::cout.flush();
    std::_Exit(code);
#else
    return code;
#endif
}
