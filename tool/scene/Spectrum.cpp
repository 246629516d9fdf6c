#include "tool/scene/Spectrum.h"

#include <algorithm>
#include <array>

#include "bands/NamingScheme.h"

namespace kestms {
namespace {

struct BandLimits {
    int bandNumber;  ///< as band identification numbers them
    int from;        ///< nanometres
    int to;
};

/// Landsat 7 ETM+, from the U.S. Geological Survey's list of the Landsat satellites' band
/// designations. Both gains of band 6 come from one detector.
constexpr std::array kLandsat7Limits{
    BandLimits{0, 450, 520},     BandLimits{1, 520, 600},     BandLimits{2, 630, 690},
    BandLimits{3, 770, 900},     BandLimits{4, 1550, 1750},   BandLimits{5, 2090, 2350},
    BandLimits{6, 10400, 12500}, BandLimits{7, 10400, 12500}, BandLimits{8, 520, 900},
};

}  // namespace

std::optional<SpectralRange> spectralRangeOf(int scheme, int bandNumber) {
    if (scheme != kest::SchemeLandsat7 && scheme != kest::SchemeLandsat7Fast) {
        return std::nullopt;
    }
    const auto* found =
        std::find_if(kLandsat7Limits.begin(), kLandsat7Limits.end(),
                     [&](const BandLimits& limits) { return limits.bandNumber == bandNumber; });
    if (found == kLandsat7Limits.end()) {
        return std::nullopt;
    }
    constexpr double kNanometres = 1000.0;
    return SpectralRange{(found->from + found->to) / (2 * kNanometres),
                         (found->to - found->from) / kNanometres};
}

}  // namespace kestms
