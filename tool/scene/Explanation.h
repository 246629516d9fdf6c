#pragma once

#include <string>
#include <vector>

#include "pyxis/FileSpecifier.h"
#include "tool/scene/Components.h"
#include "tool/scene/Session.h"

namespace kestms {

/// The scheme of one component by its name or format.
struct ComponentScheme {
    Component component;
    int kind = 0;                 ///< a kest::NamingScheme
    int trailingBandNumber = -1;  ///< -1: the name does not end in two digits
};

/// Why a set follows its naming scheme.
struct Explanation {
    int scheme = 0;  ///< a kest::NamingScheme
    std::vector<ComponentScheme> components;
    std::string rule;  ///< the deciding rule, a sentence
    /// What kept the set from a better scheme, each a sentence: the first component that differs
    /// in kind from the first one, the first two that share a band number; and why a band of a
    /// recognised product has no name in it.
    std::vector<std::string> obstacles;
};

/// `set` holds the components that a codec reads (see OpenedSet::specifier).
Explanation explainScheme(Session& session, const Pyxis::FileSpecifier& set);

}  // namespace kestms
