#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/commands/InputOptions.h"
#include "tool/commands/RasterOptions.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/Quicklook.h"
#include "tool/raster/RasterExport.h"

namespace kestms {
namespace {

using kest::BandAssignment;
using kest::BandType;

constexpr int kLargestPicture = 16384;

struct QuicklookOptions {
    ExportRequest request;
    std::vector<std::string> rgb;
    int size = 1024;
};

std::vector<Band> bandsFor(const std::vector<Band>& bands,
                           const std::vector<BandAssignment>& channels) {
    std::vector<Band> found;
    for (const BandAssignment channel : channels) {
        const auto band = std::find_if(bands.begin(), bands.end(), [channel](const Band& each) {
            return each.assignment == channel;
        });
        if (band != bands.end()) {
            found.push_back(*band);
        }
    }
    return found;
}

/// The bands for red, green and blue, or one for grey: those requested; else the bands of the
/// display channels; else the panchromatic or the first one.
std::vector<Band> bandsToShow(const OpenedSet& set, const QuicklookOptions& options) {
    constexpr std::size_t kChannels = 3;
    if (!options.rgb.empty()) {
        std::vector<Band> shown;
        for (const std::string& word : wordsOf(set.bands(), options.rgb)) {
            shown.push_back(selectBands(set.bands(), {word}).front());
        }
        if (shown.size() != kChannels) {
            throw Failure(ExitCode::Usage, "--rgb", "takes three bands");
        }
        return shown;
    }
    std::vector<Band> bands = bandsOf(set, options.request);
    if (!options.request.bands.empty() && (bands.size() == 1 || bands.size() == kChannels)) {
        return bands;
    }
    std::vector<Band> colours = bandsFor(
        bands,
        {BandAssignment::RedChannel, BandAssignment::GreenChannel, BandAssignment::BlueChannel});
    if (colours.size() == kChannels) {
        return colours;
    }
    const auto grey = std::find_if(bands.begin(), bands.end(), [](const Band& band) {
        return band.type == BandType::Panchromatic;
    });
    return {grey == bands.end() ? bands.front() : *grey};
}

ExitCode quicklook(Context& context, const QuicklookOptions& options) {
    const ExportRequest& request = options.request;
    refuseStandardOutput(request.output);
    static_cast<void>(pictureFormat(request.output));
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters =
        layOut(bandsToShow(set, options), request.output, request.grid);
    drawQuicklook(rasters.front(), options.size)
        .write(request.output, {context.inputs, request.overwrite});
    return ExitCode::Success;
}

}  // namespace

void addQuicklookCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<QuicklookOptions>();
    CLI::App* command = app.add_subcommand(
        "quicklook", "Draw the scene as a picture, in the colours of its display channels");
    addFileOptions(*command, options->request,
                   "The picture to write (.png, .jpg or .webp; PNG otherwise)");
    command->add_option("--size", options->size, "Longest side in pixels (default: 1024)")
        ->check(CLI::Range(1, kLargestPicture));
    command
        ->add_option("--rgb", options->rgb, "Bands to show in red, green and blue, as for --bands")
        ->allow_extra_args(false);
    addBandsOption(*command, options->request, "; three are red, green and blue,\none is grey");
    addPartOptions(*command, options->request);
    addInputOptions(*command, context);
    addSkipMisfitsOption(*command, context);
    command->footer(
        "Bands of different pixel sizes are brought to one grid and stretched from 2 to 98 %.\n"
        "Without bands for red, green and blue the picture is grey. Pixels without data are\n"
        "transparent (white in JPEG); small scenes are enlarged by a whole number.\n"
        "\n"
        "Examples:\n"
        "  kestms quicklook scene/*.TIF -o scene.png\n"
        "  kestms quicklook scene.xml -o thumbnail.jpg --size 200\n"
        "  kestms quicklook scene.xml -o infrared.png --rgb nir,red,green");
    command->callback([&context, options] {
        context.action = [&context, options] { return quicklook(context, *options); };
    });
}

}  // namespace kestms
