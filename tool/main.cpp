#include <iostream>

#include "tool/CommandLine.h"

int main(int argc, char** argv) {
    return kestms::run(argc, argv, std::cin, std::cout, std::cerr);
}
