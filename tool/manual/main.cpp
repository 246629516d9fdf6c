// Writes the manual pages and the completions, when the tool is built.
// usage: write_manual DIRECTORY

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "tool/CommandLine.h"
#include "tool/manual/CommandText.h"
#include "tool/manual/Completion.h"
#include "tool/manual/ManualPage.h"
#include "tool/scene/Context.h"

namespace fs = std::filesystem;

namespace {

/// Throws std::ios_base::failure.
void write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(path, std::ios::binary | std::ios::trunc);
    file << text;
}

void writeAll(const fs::path& directory) {
    kestms::Context context(std::cin, std::cout, std::cerr);
    const std::unique_ptr<CLI::App> app = kestms::commandLine(context);
    const kestms::CommandText program = kestms::textOf(*app);
    const fs::path pages = directory / "man" / "man1";
    write(pages / "kestms.1", kestms::programPage(program, KESTMS_VERSION));
    for (const kestms::CommandText& command : program.commands) {
        write(pages / ("kestms-" + command.name + ".1"),
              kestms::commandPage(program, command, KESTMS_VERSION));
    }
    write(directory / "completions" / "kestms", kestms::bashCompletion(program));
    write(directory / "completions" / "_kestms", kestms::zshCompletion(program));
    write(directory / "completions" / "kestms.fish", kestms::fishCompletion(program));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: write_manual DIRECTORY\n";
        return 2;
    }
    try {
        writeAll(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << "write_manual: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
