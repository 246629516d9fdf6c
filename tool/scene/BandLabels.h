#pragma once

#include <string>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// For each file the part of its name that differs from the others' ("B10", "nir"), whole words
/// of it; empty where there is none.
std::vector<std::string> distinguishingParts(const std::vector<std::string>& paths);

/// Names bands that the set only counts ("Band 2") after what their components say of them, in the
/// file or in its auxiliary file, else after the part of the file's name that differs. `paths` are
/// those of all bands of the set.
void labelBands(const std::vector<Band*>& unknown, const std::vector<std::string>& paths);

}  // namespace kestms
