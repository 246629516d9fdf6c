#pragma once

#include <string>

namespace kestms {

/// A number as short as it can be while still reading back the same.
std::string numberText(double value);

}  // namespace kestms
