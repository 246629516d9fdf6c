#include "tool/raster/Quicklook.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tool/actions/RasterActions.h"
#include "tool/raster/BandSelection.h"
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

}  // namespace

ExitCode drawPicture(Context& context, const QuicklookOptions& options) {
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

}  // namespace kestms
