#pragma once

#include "tool/scene/OpenedSet.h"
#include "tool/terminal/Json.h"

namespace kestms {

// The document of `kestms info --json`. Members may be added, never renamed or removed.

/// All of it but the bands.
Json setJson(const OpenedSet& set);
Json bandJson(const Band& band);

}  // namespace kestms
