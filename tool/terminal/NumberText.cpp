#include "tool/terminal/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kestms {

std::string numberText(double value) {
    std::array<char, 64> text{};
    char* const end = text.data() + text.size();
    // Coordinates and sizes read better without an exponent.
    const double size = std::abs(value);
    const bool plain = size == 0.0 || (size >= 1e-9 && size < 1e15);
    const auto result = plain ? std::to_chars(text.data(), end, value, std::chars_format::fixed)
                              : std::to_chars(text.data(), end, value);
    return {text.data(), result.ptr};
}

std::string sizeText(double value) {
    constexpr double kAllWhole = 1e5;
    constexpr int kDigits = 6;
    std::array<char, 64> text{};
    char* const end = text.data() + text.size();
    const double size = std::abs(value);
    if (size >= kAllWhole && size < 1e15) {
        return numberText(std::round(value));
    }
    const auto result = std::to_chars(text.data(), end, value, std::chars_format::general, kDigits);
    double rounded = value;
    std::from_chars(text.data(), result.ptr, rounded);
    return numberText(rounded);
}

std::string sizeText(double width, double height) {
    return sizeText(width) + " x " + sizeText(height);
}

}  // namespace kestms
