#pragma once

#include <optional>

namespace kestms {

/// The part of the spectrum that a band records, in micrometres.
struct SpectralRange {
    double centre = 0.0;
    double width = 0.0;  ///< full width at half maximum
};

/// Of a band by the set's kest::NamingScheme and the band's number; nothing where the sensor is
/// not known, however the band is called.
std::optional<SpectralRange> spectralRangeOf(int scheme, int bandNumber);

}  // namespace kestms
