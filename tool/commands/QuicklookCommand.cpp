#include <memory>

#include "tool/actions/RasterActions.h"
#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"
#include "tool/commands/RasterOptions.h"

namespace kestms {
namespace {

constexpr int kLargestPicture = 16384;

}  // namespace

void addQuicklookCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<QuicklookOptions>();
    CLI::App* command = app.add_subcommand(
        "quicklook", "Draw the scene as a picture, in the colours of its display channels");
    addFileOptions(*command, options->request,
                   "The picture to write (.png, .jpg or .webp; PNG otherwise)");
    command->add_option("--size", options->size, "Longest side in pixels (default: 1024)")
        ->check(CLI::Range(1, kLargestPicture));
    auto* rgb = command
                    ->add_option("--rgb", options->rgb,
                                 "Bands to show in red, green and blue, in place of --bands")
                    ->allow_extra_args(false);
    addBandsOption(*command, options->request, "; three are red, green and blue,\none is grey");
    command->get_option("--bands")->excludes(rgb);
    addPartOptions(*command, options->request);
    addInputOptions(*command, context);
    command->footer(
        "Bands of different pixel sizes are brought to one grid and stretched from 2 to 98 %,\n"
        "without borders of no-data or, in colours, zero. Without bands for red, green and blue\n"
        "the picture is grey. Pixels without data are transparent (white in JPEG); small scenes\n"
        "are enlarged by a whole number. The name written is printed.\n"
        "\n"
        "Examples:\n"
        "  kestms quicklook scene/*.TIF -o scene.png\n"
        "  kestms quicklook scene.xml -o thumbnail.jpg --size 200\n"
        "  kestms quicklook scene.xml -o infrared.png --rgb nir,red,green");
    runWhenChosen(*command, context, drawPicture, options);
}

}  // namespace kestms
