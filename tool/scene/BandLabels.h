#pragma once

#include <string>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// For each file the part of its name that differs from the others ("B10", "nir"), in whole words;
/// empty if there is none.
std::vector<std::string> distinguishingParts(const std::vector<std::string>& paths);

/// Names bands that the set only counts ("Band 2", "B02") after the description in their file or
/// its auxiliary file, else, with `byFileName`, after the part of the file name that differs.
/// `paths` are those of all bands of the set.
void labelBands(const std::vector<Band*>& bands, const std::vector<std::string>& paths,
                bool byFileName);

}  // namespace kestms
