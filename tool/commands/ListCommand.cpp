#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "host/Text.h"
#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"
#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputFormat.h"
#include "tool/scene/Diagnosis.h"
#include "tool/scene/Inputs.h"
#include "tool/scene/Misfits.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

struct ListOptions {
    std::vector<std::string> inputs;
    std::string output;
    bool purify = false;
    bool keepPaths = false;
    bool overwrite = false;
};

/// Without the components that no codec reads, each of which is named on the error stream.
Pyxis::FileSpecifier purified(Context& context, const Pyxis::FileSpecifier& set) {
    Pyxis::FileSpecifier pure = set;
    const bool remains = context.session().codec().purifyFileSet(pure);
    for (const Component& component : componentsOf(set)) {
        if (!isDecodable(component.path)) {
            context.warn(component.path, "left out: " + whyNotReadable(component.path));
        }
    }
    if (!remains) {
        throw Failure(ExitCode::NotDecodable, "fewer than two of the files can be read");
    }
    return pure;
}

/// XML has no way to write control characters but tabs and line ends, nor U+FFFE and U+FFFF, and
/// other programs would not read the document.
void refuseUnwritable(const std::vector<Component>& components) {
    for (const Component& component : components) {
        const std::string& path = component.path;
        if (std::any_of(
                path.begin(), path.end(),
                [](unsigned char c) { return c < ' ' && c != '\t' && c != '\n' && c != '\r'; }) ||
            path.find("\xEF\xBF\xBE") != path.npos || path.find("\xEF\xBF\xBF") != path.npos) {
            throw Failure(ExitCode::CannotWrite, component.path,
                          "a set document cannot hold this name");
        }
    }
}

ExitCode list(Context& context, const ListOptions& options) {
    const MissingFile missing = options.purify ? MissingFile::Keep : MissingFile::Fail;
    Pyxis::FileSpecifier set = withoutMisfits(context, readSet(options.inputs, context, missing));
    std::vector<Component> components = componentsOf(set);
    if (components.size() < 2) {
        throw Failure(ExitCode::NotDecodable, components.front().path, kTooFewBands);
    }
    if (!options.keepPaths) {
        for (Component& component : components) {
            component.path = component.path.empty() ? "" : absoluteName(component.path);
        }
        set = setOf(components);
    }
    if (options.purify) {
        set = purified(context, set);
    }
    refuseUnwritable(componentsOf(set));
    const std::string document = Pyxis::toUtf8(set.string()) + "\n";
    if (options.output.empty() || isStandardOutput(options.output)) {
        context.out << document;
        return ExitCode::Success;
    }
    std::error_code error;
    if (std::filesystem::is_regular_file(options.output, error)) {
        // The loss of an input is the more important reason.
        context.inputs.refuseOutput(options.output, options.overwrite);
    }
    requireExtension(options.output, OutputFormat::SetDocument);
    writeOutput(options.output, {context.inputs, options.overwrite}, document);
    context.out << printable(options.output) << "\n";
    return ExitCode::Success;
}

}  // namespace

void addListCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("list", "Write the document that lists a set's files");
    auto options = std::make_shared<ListOptions>();
    command->add_option("FILE", options->inputs, "Files of the set, as FILE or FILE#FRAME")
        ->required();
    command->add_option("-o,--output", options->output,
                        "Where the document goes (default: standard output)");
    command->add_flag("--purify", options->purify, "Leave out files that no codec reads");
    command->add_flag("--keep-paths", options->keepPaths,
                      "Write paths as given; they are then looked up from the directory in which\n"
                      "a program is started (default: absolute paths)");
    command->add_flag("--overwrite", options->overwrite,
                      "Replace the output when it is there already");
    addInputOptions(*command, context);
    command->footer(
        "Examples:\n"
        "  kestms list scene/ -o scene.xml\n"
        "  kestms list red.tif green.tif nir.tif\n"
        "  kestms list 'stack.tif#0' 'stack.tif#3' -o pair.xml\n"
        "  ls scene/*.TIF | kestms list - --purify -o scene.xml");
    runWhenChosen(*command, context, list, options);
}

}  // namespace kestms
