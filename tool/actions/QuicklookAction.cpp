#include "tool/raster/Quicklook.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "tool/actions/RasterActions.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/raster/OutputGrid.h"
#include "tool/raster/RasterExport.h"

namespace kestms {
namespace {

using kest::BandAssignment;
using kest::BandType;

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
    assignDisplayChannels(bands);
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

SharedGrid gridOf(const std::vector<Band>& bands) {
    std::vector<const Band*> pointers;
    std::transform(bands.begin(), bands.end(), std::back_inserter(pointers),
                   [](const Band& band) { return &band; });
    return sharedGrid(pointers, {});
}

/// The part to show. A window counts pixels of the grid that all bands share; those shown may have
/// a coarser one, in whose whole pixels it is.
GridOptions partOf(const std::vector<Band>& shown, const OpenedSet& set,
                   const QuicklookOptions& asked) {
    GridOptions options = asked.request.grid;
    if (!options.window) {
        return options;
    }
    // The bands that an export would take.
    const std::vector<Band> all = asked.rgb.empty() ? bandsOf(set, asked.request) : set.bands();
    const auto band = std::find_if(all.begin(), all.end(), [&shown](const Band& each) {
        return each.frame == shown.front().frame;
    });
    const PixelRectangle from =
        gridOf(all).rectangles[static_cast<std::size_t>(band - all.begin())];
    const PixelRectangle to = gridOf(shown).rectangles.front();
    constexpr double kNoise = 1e-6;
    const auto [x, y, width, height] = *options.window;
    const double across = to.width / from.width;
    const double down = to.height / from.height;
    const double left = std::floor(to.x + (x - from.x) * across + kNoise);
    const double top = std::floor(to.y + (y - from.y) * down + kNoise);
    const double right = std::ceil(to.x + (x + width - from.x) * across - kNoise);
    const double bottom = std::ceil(to.y + (y + height - from.y) * down - kNoise);
    options.window = {left, top, right - left, bottom - top};
    return options;
}

}  // namespace

ExitCode drawPicture(Context& context, const QuicklookOptions& options) {
    const ExportRequest& request = options.request;
    refuseStandardOutput(request.output);
    static_cast<void>(pictureFormat(request.output));
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<Band> shown = bandsToShow(set, options);
    const std::vector<OutputRaster> rasters =
        layOut(shown, request.output, partOf(shown, set, options));
    drawQuicklook(rasters.front(), options.size)
        .write(request.output, {context.inputs, request.overwrite});
    if (const std::string note = cutNote(rasters.front()); !note.empty()) {
        context.warn(request.output, note);
    }
    return ExitCode::Success;
}

}  // namespace kestms
