#include "tool/raster/Quicklook.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tool/actions/RasterActions.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/ComponentDescription.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/raster/OutputGrid.h"
#include "tool/raster/RasterExport.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

using kest::BandType;

/// The first band of each display channel, in the order of display.
std::vector<Band> bandsOfChannels(const std::vector<Band>& bands) {
    std::vector<Band> found;
    for (const DisplayChannel& channel : kDisplayChannels) {
        const auto band = std::find_if(bands.begin(), bands.end(), [&channel](const Band& each) {
            return each.assignment == channel.assignment;
        });
        if (band != bands.end()) {
            found.push_back(*band);
        }
    }
    return found;
}

constexpr std::size_t kChannels = kDisplayChannels.size();

/// The bands that the user names for red, green and blue.
std::vector<Band> bandsNamed(const std::vector<Band>& bands, const std::vector<std::string>& rgb) {
    std::vector<Band> shown;
    for (const std::string& word : wordsOf(bands, rgb)) {
        shown.push_back(selectBands(bands, {word}).bands.front());
    }
    if (shown.size() != kChannels) {
        throw Failure(ExitCode::Usage, "--rgb", "takes three bands");
    }
    return shown;
}

/// Of the bands of an export those for red, green and blue, or one for grey: the bands of the
/// display channels; else the panchromatic or the first one.
std::vector<Band> bandsToShow(std::vector<Band> bands, const ExportRequest& request) {
    if (!request.bands.empty() && (bands.size() == 1 || bands.size() == kChannels)) {
        return bands;
    }
    if (!request.bands.empty() && bands.size() == 2) {
        throw Failure(ExitCode::Usage, "--bands",
                      "one band makes a grey picture and three a coloured one, but not two");
    }
    assignDisplayChannels(bands);
    std::vector<Band> colours = bandsOfChannels(bands);
    if (colours.size() == kChannels) {
        return colours;
    }
    const auto grey = std::find_if(bands.begin(), bands.end(), [](const Band& band) {
        return band.type == BandType::Panchromatic;
    });
    return {grey == bands.end() ? bands.front() : *grey};
}

void warnOfMaskFiles(const Context& context, const std::string& path,
                     const std::vector<Band>& shown) {
    std::set<std::string> masks;
    for (const Band& band : shown) {
        const std::string mask = maskFileOf(band.componentPath);
        if (!mask.empty() && masks.insert(mask).second) {
            context.warn(path, mask + ": masks of their own files are not shown");
        }
    }
}

}  // namespace

ExitCode drawPicture(Context& context, const QuicklookOptions& options) {
    const ExportRequest& request = options.request;
    refuseStandardOutput(request.output);
    static_cast<void>(pictureFormat(request.output));
    const OpenedSet set = openSet(context, request.inputs);
    const bool isNamed = !options.rgb.empty();
    const std::vector<Band> all = isNamed ? set.bands() : bandsOf(context, set, request);
    const std::vector<Band> shown =
        isNamed ? bandsNamed(all, options.rgb) : bandsToShow(all, request);
    // A window counts the pixels of an export: the bands shown may have coarser ones.
    const std::vector<OutputRaster> rasters =
        layOut(shown, request.output, request.grid, requestedPart(all, request.grid));
    drawQuicklook(rasters.front(), options.size)
        .write(request.output, {context.inputs, request.overwrite});
    if (const std::string note = cutNote(rasters.front()); !note.empty()) {
        context.warn(request.output, note);
    }
    warnOfMaskFiles(context, request.output, shown);
    context.out << printable(request.output) << "\n";
    return ExitCode::Success;
}

}  // namespace kestms
