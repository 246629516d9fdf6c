#pragma once

#include "bands/NamingScheme.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Sets `out` to the short name that all bands of a set share, by its first component (a plain
/// specifier is taken as it is). Writes nothing for a scheme outside 1 to 9.
void getReferenceName(int scheme, const Pyxis::FileSpecifier& componentList,
                      Pyxis::StringBuffer& out);
/// The same by the naming of the set, for a component at hand.
void getReferenceNameOfComponent(const SetNaming& naming, const Pyxis::FileSpecifier& component,
                                 Pyxis::StringBuffer& out);

}  // namespace kest
