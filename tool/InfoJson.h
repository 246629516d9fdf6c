#pragma once

#include "tool/Json.h"
#include "tool/OpenedSet.h"

namespace kestms {

/// Everything that `kestms info --json` tells of a set. Members are only ever added.
Json setJson(const SetView& set);

}  // namespace kestms
