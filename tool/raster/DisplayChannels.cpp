#include "tool/raster/DisplayChannels.h"

#include <algorithm>

#include "tool/raster/ComponentDescription.h"
#include "tool/raster/OutputGrid.h"

namespace kestms {
namespace {

using kest::BandAssignment;

BandAssignment channelOf(GDALColorInterp colour) {
    switch (colour) {
        case GCI_RedBand:
            return BandAssignment::RedChannel;
        case GCI_GreenBand:
            return BandAssignment::GreenChannel;
        case GCI_BlueBand:
            return BandAssignment::BlueChannel;
        default:
            return BandAssignment::NotAssigned;
    }
}

/// The place of a channel among red, green, blue and the rest.
int orderOf(const Band& band) {
    switch (band.assignment) {
        case BandAssignment::RedChannel:
            return 0;
        case BandAssignment::GreenChannel:
            return 1;
        case BandAssignment::BlueChannel:
            return 2;
        case BandAssignment::NotAssigned:
            break;
    }
    return 3;
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
