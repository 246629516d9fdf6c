#include <iostream>

#include "tool/CommandLine.h"

/// Runs a command that needs GDAL.
extern "C" __attribute__((visibility("default"))) int kestmsRun(int argc, const char* const* argv) {
    return kestms::run(argc, argv, std::cin, std::cout, std::cerr);
}
