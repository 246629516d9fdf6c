#pragma once

#include "bands/NamingScheme.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Sets `out` to the short name that all bands of a set share, derived from its first component (a
/// plain specifier is a component itself). Writes nothing for a scheme outside 1 to 9.
void getReferenceName(int scheme, const Pyxis::FileSpecifier& componentList,
                      Pyxis::StringBuffer& out);
/// The same for a given component of a set with the given naming.
void getReferenceNameOfComponent(const SetNaming& naming, const Pyxis::FileSpecifier& component,
                                 Pyxis::StringBuffer& out);

}  // namespace kest
