#pragma once

#include <string>

namespace kestms {

/// The shortest text that reads back as the same number.
std::string numberText(double value);

/// A pixel size for people: 150.02 for 150.01999999999998. Six digits, or all those before the
/// point.
std::string sizeText(double value);
/// "30 x 30".
std::string sizeText(double width, double height);

}  // namespace kestms
