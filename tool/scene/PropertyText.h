#pragma once

#include <string>
#include <vector>

#include "pyxis/FormatCodecProperty.h"
#include "pyxis/ReadImageFile.h"

namespace kestms {

/// One property of a frame for people to read, in UTF-8.
struct PropertyText {
    std::string name;
    std::string value;  ///< may hold line ends
};

/// The value in words; empty for a class that the tool does not know.
std::string valueText(const Pyxis::FormatCodecPropertyInterface& property);

/// Every property of a frame's set, in its order.
std::vector<PropertyText> propertyTexts(Pyxis::ReadImageFileFrameInterface& frame);

}  // namespace kestms
