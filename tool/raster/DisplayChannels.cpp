#include "tool/raster/DisplayChannels.h"

#include <algorithm>
#include <cstddef>

#include "tool/raster/ComponentDescription.h"
#include "tool/raster/OutputGrid.h"

namespace kestms {
namespace {

using kest::BandAssignment;

BandAssignment channelOf(GDALColorInterp colour) {
    const auto found =
        std::find_if(kDisplayChannels.begin(), kDisplayChannels.end(),
                     [colour](const DisplayChannel& each) { return each.colour == colour; });
    return found == kDisplayChannels.end() ? BandAssignment::NotAssigned : found->assignment;
}

/// The place of the band's channel in the table, or after it.
std::ptrdiff_t orderOf(const Band& band) {
    return std::find_if(
               kDisplayChannels.begin(), kDisplayChannels.end(),
               [&band](const DisplayChannel& each) { return each.assignment == band.assignment; }) -
           kDisplayChannels.begin();
}

}  // namespace

void assignDisplayChannels(std::vector<Band>& bands) {
    const bool isAssigned = std::any_of(bands.begin(), bands.end(), [](const Band& band) {
        return band.assignment != BandAssignment::NotAssigned;
    });
    if (isAssigned) {
        return;
    }
    ComponentReader components;
    for (Band& band : bands) {
        const ComponentDescription facts = components.describe(band.componentPath, sourceOf(band));
        band.assignment = channelOf(facts.colour);
    }
}

void putInDisplayOrder(std::vector<Band>& bands) {
    assignDisplayChannels(bands);
    std::stable_sort(bands.begin(), bands.end(),
                     [](const Band& a, const Band& b) { return orderOf(a) < orderOf(b); });
}

}  // namespace kestms
