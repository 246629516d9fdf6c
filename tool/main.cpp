#include <iostream>

#include "tool/Main.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    return kestms::run(argc, argv, std::cin, std::cout, std::cerr);
}
