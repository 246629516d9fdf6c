#include "bands/schemes/Schemes.h"

#include <algorithm>
#include <array>

namespace kest {
namespace {

/// Schemes by name come before those by codec, which make the host open the file.
constexpr std::array kSchemes{
    &kPoProductScheme,    &kPoProductNitfScheme, &kLandsat7Scheme,
    &kLandsat7FastScheme, &kQuickBirdScheme,     &kNitfScheme,
    &kCatalogueScheme,    &kNumberedScheme,      &kGenericScheme,
};

}  // namespace

std::span<const Scheme* const> schemes() {
    return kSchemes;
}

const Scheme* schemeOf(int number) {
    const auto found = std::find_if(kSchemes.begin(), kSchemes.end(), [number](const Scheme* each) {
        return each->number == number;
    });
    return found == kSchemes.end() ? nullptr : *found;
}

}  // namespace kest
