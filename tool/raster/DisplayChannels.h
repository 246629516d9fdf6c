#pragma once

#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// Where the set assigns no display channels, assigns those that the components' own colours name.
/// Opens the components; throws a Failure with ExitCode::CannotRead.
void assignDisplayChannels(std::vector<Band>& bands);

/// Assigns channels as above, and puts the bands for red, green and blue first, the others after
/// them as they were.
void putInDisplayOrder(std::vector<Band>& bands);

}  // namespace kestms
