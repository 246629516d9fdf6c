#pragma once

#include <string>
#include <vector>

namespace kestms {

/// For each file the part of its name that differs from the others' ("B10", "nir"), whole words
/// of it; empty where there is none.
std::vector<std::string> distinguishingParts(const std::vector<std::string>& paths);

}  // namespace kestms
