#pragma once

#include <string>
#include <vector>

#include "host/Text.h"
#include "pyxis/FormatCodecPropertySetIterator.h"
#include "sets/ComponentList.h"

namespace fakes {

/// The component list of those files; the frame is the same in all.
inline Pyxis::FileSpecifier setOf(const std::vector<std::string>& paths, int frame = 0) {
    kest::ComponentListBuilder list;
    for (const std::string& path : paths) {
        list.append(Pyxis::fileSpecifier(path), frame);
    }
    return list.specifier();
}

/// The component list of frames of one file.
inline Pyxis::FileSpecifier framesOf(const std::string& path, const std::vector<int>& frames) {
    kest::ComponentListBuilder list;
    for (const int frame : frames) {
        list.append(Pyxis::fileSpecifier(path), frame);
    }
    return list.specifier();
}

/// The names of the properties of a set, in its order.
inline std::vector<std::string> namesIn(Pyxis::FormatCodecPropertySetIterator& set) {
    std::vector<std::string> names;
    for (set.start(); !set.endOfList(); set.step()) {
        names.push_back(Pyxis::toUtf8(set.openProperty()->getName()));
        set.closeProperty();
    }
    return names;
}

}  // namespace fakes
