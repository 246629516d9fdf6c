#pragma once

#include <gdal.h>

#include <array>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

struct DisplayChannel {
    kest::BandAssignment assignment;
    GDALColorInterp colour;
};

/// In the order of display.
inline constexpr std::array kDisplayChannels = {
    DisplayChannel{kest::BandAssignment::RedChannel, GCI_RedBand},
    DisplayChannel{kest::BandAssignment::GreenChannel, GCI_GreenBand},
    DisplayChannel{kest::BandAssignment::BlueChannel, GCI_BlueBand}};

/// Where the set assigns no display channels, assigns those that the components' own colours name.
/// Opens the components; throws a Failure with ExitCode::CannotRead.
void assignDisplayChannels(std::vector<Band>& bands);

/// Assigns channels as above, and puts the bands for red, green and blue first, the others after
/// them as they were.
void putInDisplayOrder(std::vector<Band>& bands);

}  // namespace kestms
