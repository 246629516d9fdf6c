#pragma once

#include <cmath>
#include <cstdint>

// Repeatable noise: the same at every run and on every machine.

namespace kestms::samples {

/// A number from 0 to 1 that depends on the place only.
inline double hashed(std::int32_t x, std::int32_t y, std::uint32_t salt) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343U ^
                      static_cast<std::uint32_t>(y) * 0xD8163841U ^ salt * 0xCB1AB31FU;
    h = (h ^ h >> 15U) * 0x2C1B3C6DU;
    h = (h ^ h >> 12U) * 0x297A2D39U;
    h ^= h >> 15U;
    return h / 4294967295.0;
}

/// Smooth noise from 0 to 1 with features of the size 1.
inline double smoothNoise(double x, double y, std::uint32_t salt) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto ease = [](double t) { return t * t * (3 - 2 * t); };
    const auto mix = [](double a, double b, double t) { return a + (b - a) * t; };
    const auto column = static_cast<std::int32_t>(left);
    const auto row = static_cast<std::int32_t>(top);
    const double s = ease(x - left);
    const double t = ease(y - top);
    return mix(mix(hashed(column, row, salt), hashed(column + 1, row, salt), s),
               mix(hashed(column, row + 1, salt), hashed(column + 1, row + 1, salt), s), t);
}

/// Noise from 0 to 1 with features from the size 1 down to a sixteenth.
inline double fractalNoise(double x, double y, std::uint32_t salt) {
    double sum = 0.0;
    double weight = 0.5;
    for (std::uint32_t octave = 0; octave < 5; ++octave) {
        sum += weight * smoothNoise(x, y, salt + octave);
        x *= 2.0;
        y *= 2.0;
        weight /= 2.0;
    }
    return sum / (1.0 - weight * 2.0);
}

}  // namespace kestms::samples
