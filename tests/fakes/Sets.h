#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "codec/strings/StringResources.h"
#include "fakes/Resources.h"
#include "host/Text.h"
#include "pyxis/FormatCodecPropertySetIterator.h"
#include "sets/ComponentList.h"

namespace fakes {

/// The component list of those files; the frame is the same in all.
inline Pyxis::FileSpecifier setOf(std::initializer_list<std::string_view> paths, int frame = 0) {
    kest::ComponentListBuilder list;
    for (const std::string_view path : paths) {
        list.append(Pyxis::fileSpecifier(path), frame);
    }
    return list.specifier();
}

/// The English texts, for as long as it lives.
struct EnglishTexts {
    EnglishTexts() { kest::setResourceFileName(Pyxis::fileSpecifier(stringModule("en"))); }
    ~EnglishTexts() { kest::setResourceFileName(Pyxis::FileSpecifier()); }
};

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
