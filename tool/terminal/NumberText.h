#pragma once

#include <string>

namespace kestms {

/// A number as short as it can be while still reading back the same.
std::string numberText(double value);

/// A pixel size as people write it: 150.02 for 150.01999999999998. Six digits, or all those before
/// the point.
std::string sizeText(double value);
/// "30 x 30".
std::string sizeText(double width, double height);

}  // namespace kestms
