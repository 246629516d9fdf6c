#pragma once

namespace fakes {

// Places in the source and build tree. Only one small file is compiled with them, so that the
// compiled tests are the same in every tree.

extern const char* const kResources;  ///< folder of the texts
extern const char* const kTool;       ///< the program kestms

}  // namespace fakes
