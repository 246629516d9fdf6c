#pragma once

#include "pyxis/FileSpecifier.h"

namespace kest {

/// Sets `out` to the bare name of the metadata text file of a "po_" product, by the set's first
/// component (a plain specifier is taken as it is). Whether the file exists is not checked. A name
/// that is no "po_" name leaves `out` unchanged.
void getMetadataTextFile(const Pyxis::FileSpecifier& componentList, Pyxis::FileSpecifier& out);

}  // namespace kest
