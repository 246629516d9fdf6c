#include "tool/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/commands/HelpCommand.h"
#include "tool/raster/TemporaryDirectory.h"
#include "tool/scene/Context.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

constexpr const char* kDescription =
    "Reads single-band raster files of one scene as one multispectral image.";

constexpr const char* kFooter =
    "A set is named by a folder or an archive (.zip, .tar) that holds one scene (or several:\n"
    "--scene NAME), by the scene's metadata file (..._MTL.txt, MTD_MSIL2A.xml), or by its files:\n"
    "FILE (all its frames) or FILE#FRAME (0 is the first), a quoted glob, https://... or another\n"
    "name that GDAL has for files on the network, SET.xml (a document that `kestms list` wrote),\n"
    "@LIST (a text file with one of these a line; \" # \" begins a comment), or - (the same from\n"
    "standard input).\n"
    "\n"
    "Examples:\n"
    "  kestms scenes downloads/\n"
    "  kestms info scene/\n"
    "  kestms list scene/ -o scene.xml\n"
    "  kestms check scene.xml\n"
    "\n"
    "Exit codes:\n"
    "  0    success\n"
    "  1    the files do not make a set that can be decoded\n"
    "  2    wrong usage\n"
    "  3    an input cannot be read\n"
    "  4    an output cannot be written\n"
    "  5    unexpected error, such as no memory\n"
    "  130  interrupted";

void addCommands(CLI::App& app, Context& context) {
    addScenesCommand(app, context);
    addListCommand(app, context);
    addCheckCommand(app, context);
    addInfoCommand(app, context);
    addQuicklookCommand(app, context);
    addSamplesCommand(app, context);
    addVrtCommand(app, context);
    addExportCommand(app, context);
    addStacCommand(app, context);
    addProductsCommand(app, context);
}

/// Options that can be repeated take one value at a time; CLI11 shows "TEXT ..." for them.
void showOneValue(CLI::App& command) {
    for (CLI::Option* option : command.get_options(
             [](const CLI::Option* each) { return each->get_items_expected_max() > 1; })) {
        if (!option->get_positional()) {
            option->option_text(option->get_type_name());
        }
    }
}

std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

/// Otherwise the message for an unknown command would be "A subcommand is required".
std::string usageError(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> rest = app.remaining();
    const bool noCommand = app.get_subcommands().empty() && !rest.empty();
    const std::string what = !noCommand                      ? error.what()
                             : rest.front().starts_with('-') ? rest.front() + ": no such option"
                                                             : noSuchCommand(app, rest.front());
    return what + " (see kestms --help)";
}

int answer(const Context& context, ExitCode code, const std::string& text) {
    context.fail(oneLine(text));
    return static_cast<int>(code);
}

/// A full disk or a closed pipe may be noticed only at the end.
ExitCode flushed(const Context& context, ExitCode code) {
    context.out.flush();
    if (!context.out) {
        throw Failure(ExitCode::CannotWrite, "standard output", "write failed");
    }
    return code;
}

int runParsed(int argc, const char* const* argv, Context& context) {
    const std::unique_ptr<CLI::App> app = commandLine(context);
    try {
        app->parse(argc, argv);
    } catch (const CLI::Success& success) {
        // Help or version requested.
        app->exit(success, context.out, context.err);
        return static_cast<int>(flushed(context, ExitCode::Success));
    } catch (const CLI::ParseError& error) {
        return answer(context, ExitCode::Usage, usageError(*app, error));
    }
    return static_cast<int>(flushed(context, context.action()));
}

}  // namespace

std::unique_ptr<CLI::App> commandLine(Context& context) {
    auto app = std::make_unique<CLI::App>(kDescription, "kestms");
    app->require_subcommand(1);
    app->set_version_flag("-V,--version", std::string("kestms ") + KESTMS_VERSION);
    app->add_flag("-q,--quiet", context.quiet, "No warnings, notes and progress; errors remain");
    app->add_flag("--wide", context.wide, "Do not fit tables to the terminal");
    app->add_option("--language", context.language,
                    "Language of band names and other texts (default: the environment's)")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app->add_option("--products", context.products.files,
                    "Name sets by this catalogue of products as well, before the shipped one")
        ->type_name("FILE")
        ->allow_extra_args(false);
    app->add_flag_callback(
        "--no-products", [&context] { context.products.shipped = false; },
        "Do without the catalogue of products that comes with the program");
    app->add_flag("--allow-remote", context.paths.remote,
                  "Read what documents and lists name on the network; what arguments name is read");
    app->add_flag("--allow-vrt", context.paths.virtualRasters,
                  "Read virtual rasters as GDAL does, with any other file that they name");
    app->footer(kFooter);
    addCommands(*app, context);
    addHelpCommand(*app, context);
    showOneValue(*app);
    for (CLI::App* command : app->get_subcommands({})) {
        command->fallthrough();
        showOneValue(*command);
    }
    return app;
}

int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
    Context context(in, out, err);
    context.takesRemoteNames = true;
    std::optional<InterruptGuard> guard;
    try {
        guard.emplace(TemporaryDirectory::removeAll);
        return runParsed(argc, argv, context);
    } catch (const Failure& failure) {
        // An interrupted wait looks like a file that cannot be read.
        return isInterrupted() ? answer(context, ExitCode::Interrupted, "interrupted")
                               : answer(context, failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return answer(context, ExitCode::Unexpected, "out of memory");
    } catch (const std::exception& error) {
        return answer(context, ExitCode::Unexpected,
                      std::string("unexpected error: ") + error.what());
    }
}

}  // namespace kestms
