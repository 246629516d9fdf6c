#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pyxis/FormatCodecProperty.h"
#include "pyxis/FormatCodecPropertySetIterator.h"
#include "pyxis/ReadImageFile.h"

namespace kestms {

/// One property of a frame for people to read, in UTF-8.
struct PropertyText {
    std::string name;
    std::string value;  ///< may hold line ends
};

/// The value in words; empty for a class that the tool does not know.
std::string valueText(const Pyxis::FormatCodecPropertyInterface& property);

/// Calls `read` with every property of a frame's set, in its order.
template <typename Read>
void forEachProperty(Pyxis::ReadImageFileFrameInterface& frame, Read read) {
    const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> set(frame.getProperties());
    if (!set) {
        return;
    }
    for (set->start(); !set->endOfList(); set->step()) {
        if (const auto* property = set->openProperty()) {
            read(*property);
        }
        set->closeProperty();
    }
}

/// Every property of a frame's set, in its order.
std::vector<PropertyText> propertyTexts(Pyxis::ReadImageFileFrameInterface& frame);

}  // namespace kestms
