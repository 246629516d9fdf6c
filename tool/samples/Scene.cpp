#include "tool/samples/Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "tool/samples/Noise.h"

namespace kestms::samples {
namespace {

enum class Cover : std::size_t {
    Water,
    Shallows,
    Sand,
    Meadow,
    GreenCrop,
    RipeCrop,
    BareSoil,
    Woods,
    Rock,
    Snow,
    Street,
    RedRoof,
    GreyRoof,
    Count,
};

using Spectra = std::array<double, 8>;

/// Typical reflectances in per cent, rounded from published spectra of such surfaces; in the order
/// of Spectrum. The thermal column is a relative brightness.
constexpr std::array<Spectra, static_cast<std::size_t>(Cover::Count)> kSpectra{{
    {6, 5, 3, 1, 0.5, 0.3, 30, 4},      // Water
    {11, 12, 8, 3, 1, 0.5, 33, 9},      // Shallows
    {22, 28, 33, 40, 46, 42, 62, 30},   // Sand
    {5, 9, 7, 40, 22, 11, 42, 9},       // Meadow
    {4, 9, 5, 52, 20, 8, 38, 9},        // GreenCrop
    {12, 18, 20, 34, 33, 22, 52, 18},   // RipeCrop
    {11, 14, 17, 24, 34, 30, 60, 15},   // BareSoil
    {2.5, 4.5, 3, 30, 12, 5, 34, 4.5},  // Woods
    {14, 16, 18, 22, 26, 24, 48, 17},   // Rock
    {80, 82, 80, 70, 8, 5, 12, 80},     // Snow
    {13, 14, 15, 17, 19, 18, 66, 14},   // Street
    {11, 14, 26, 30, 33, 30, 64, 18},   // RedRoof
    {20, 22, 23, 25, 27, 26, 58, 22},   // GreyRoof
}};

double ramp(double from, double to, double value) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// Height of the ground, 0 on the plain to 1 on the summit in the upper right.
double height(double x, double y) {
    const double ragged = 0.22 * (fractalNoise(x * 4, y * 4, 63) - 0.5);
    const double distance = std::hypot(x - 0.88, (y - 0.10) * 1.1) + ragged;
    const double rise = 1.0 - ramp(0.0, 0.40, distance);
    return rise * (0.45 + 0.75 * fractalNoise(x * 9, y * 9, 7));
}

/// Below 0 is sea. The coast runs from the left edge to the lower right.
double aboveSea(double x, double y) {
    const double coast = 0.60 + 0.34 * x + 0.07 * (fractalNoise(x * 5, y * 5, 21) - 0.5) -
                         0.10 * std::exp(-std::pow((x - 0.30) / 0.12, 2));
    return coast - y;
}

/// Distance from the middle of the river, in its half widths; it widens towards its mouth.
double fromRiver(double x, double y) {
    const double middle =
        0.80 - 0.62 * y + 0.045 * std::sin(9.0 * y + 0.6) + 0.02 * std::sin(23.0 * y);
    return std::abs(x - middle) / (0.003 + 0.013 * y);
}

Cover townCover(double x, double y) {
    // Streets cross at an angle; each block has its own roof colour.
    const double turn = 0.35;
    const double u = (x * std::cos(turn) + y * std::sin(turn)) * 62.0;
    const double v = (y * std::cos(turn) - x * std::sin(turn)) * 62.0;
    const auto column = static_cast<std::int32_t>(std::floor(u));
    const auto row = static_cast<std::int32_t>(std::floor(v));
    if (u - column < 0.22 || v - row < 0.22) {
        return Cover::Street;
    }
    const double kind = hashed(column, row, 5);
    if (kind < 0.16) {
        return Cover::Meadow;
    }
    return kind < 0.62 ? Cover::RedRoof : Cover::GreyRoof;
}

Cover fieldCover(double x, double y) {
    const double turn = 0.2 + 0.25 * smoothNoise(x * 2.5, y * 2.5, 11);
    const double u = (x * std::cos(turn) - y * std::sin(turn)) * 15.0;
    const double v = (x * std::sin(turn) + y * std::cos(turn)) * 24.0;
    const auto row = static_cast<std::int32_t>(std::floor(v));
    const double shifted = u + 0.5 * hashed(row, 0, 31);
    const auto column = static_cast<std::int32_t>(std::floor(shifted));
    if (v - row < 0.05 || shifted - column < 0.04) {
        return Cover::Meadow;
    }
    constexpr std::array kCrops{Cover::GreenCrop, Cover::RipeCrop, Cover::Meadow,
                                Cover::GreenCrop, Cover::BareSoil, Cover::RipeCrop};
    return kCrops[static_cast<std::size_t>(hashed(column, row, 3) * 5.999)];
}

Cover coverAt(double x, double y) {
    const double land = aboveSea(x, y);
    if (land < 0.0) {
        return land < -0.035 ? Cover::Water : Cover::Shallows;
    }
    const double up = height(x, y);
    const double river = fromRiver(x, y);
    if (river < 1.0 && up < 0.55) {
        return Cover::Water;
    }
    if (land < 0.012) {
        return Cover::Sand;
    }
    if (up > 0.45) {
        return up > 0.80 ? Cover::Snow : Cover::Rock;
    }
    const double woods = fractalNoise(x * 6, y * 6, 41);
    if (up > 0.16 || woods > 0.62 || (river < 2.2 && woods > 0.45)) {
        return Cover::Woods;
    }
    const double town = std::hypot(x - 0.36, y - 0.46) + 0.10 * (woods - 0.5);
    return town < 0.16 ? townCover(x, y) : fieldCover(x, y);
}

/// Light on a slope, 1 on the plain: the sun is in the upper left.
double light(double x, double y) {
    constexpr double kStep = 0.004;
    const double slope = (height(x + kStep, y) - height(x - kStep, y) + height(x, y + kStep) -
                          height(x, y - kStep)) /
                         (2 * kStep);
    return std::clamp(1.0 + 0.10 * slope, 0.45, 1.4);
}

}  // namespace

double reflectance(double x, double y, Spectrum spectrum) {
    const Spectra& spectra = kSpectra[static_cast<std::size_t>(coverAt(x, y))];
    const double texture = 0.88 + 0.24 * fractalNoise(x * 90, y * 90, 77);
    return spectra[static_cast<std::size_t>(spectrum)] * texture * light(x, y);
}

}  // namespace kestms::samples
