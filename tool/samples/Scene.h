#pragma once

#include <cstddef>

namespace kestms::samples {

/// Spectral bands that the sample sensors see.
enum class Spectrum : std::size_t {
    Blue,
    Green,
    Red,
    NearInfrared,
    ShortWave1,
    ShortWave2,
    Thermal,
    Panchromatic,
};

/// What the ground reflects (or, in the thermal band, radiates) at a place of the sample scene, in
/// per cent. The scene spans 0 to 1 from left to right and from top to bottom: a bay with a river
/// that comes down from a snow-topped mountain, fields, woods, and a town with its streets.
double reflectance(double x, double y, Spectrum spectrum);

}  // namespace kestms::samples
