#include <cpl_error.h>

#include <iostream>

#include "tool/CommandLine.h"

/// Runs a command that needs GDAL.
extern "C" __attribute__((visibility("default"))) int kestmsRun(int argc, const char* const* argv) {
    CPLSetErrorHandler(CPLQuietErrorHandler);  // its own threads know no other handler
    return kestms::run(argc, argv, std::cin, std::cout, std::cerr);
}
