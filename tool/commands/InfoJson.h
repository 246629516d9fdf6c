#pragma once

#include "tool/scene/OpenedSet.h"
#include "tool/terminal/Json.h"

namespace kestms {

/// Everything that `kestms info --json` tells of a set. Members are only ever added.
Json setJson(const OpenedSet& set);

}  // namespace kestms
