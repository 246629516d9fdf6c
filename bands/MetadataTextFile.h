#pragma once

#include "pyxis/FileSpecifier.h"

namespace kest {

/// Sets `out` to the bare name of the metadata text file of a "po_" product, derived from the set's
/// first component (a plain specifier is a component itself). Whether the file exists is not
/// checked. Other names leave `out` unchanged.
void getMetadataTextFile(const Pyxis::FileSpecifier& componentList, Pyxis::FileSpecifier& out);

}  // namespace kest
