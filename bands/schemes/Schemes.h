#pragma once

#include "bands/Scheme.h"

// The schemes, each defined in the file of its name. The table is in Schemes.cpp.

namespace kest {

extern const Scheme kGenericScheme;
extern const Scheme kNumberedScheme;
extern const Scheme kPoProductScheme;
extern const Scheme kPoProductNitfScheme;
extern const Scheme kLandsat7Scheme;
extern const Scheme kLandsat7FastScheme;
extern const Scheme kQuickBirdScheme;
extern const Scheme kNitfScheme;
extern const Scheme kCatalogueScheme;

}  // namespace kest
