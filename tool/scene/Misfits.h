#pragma once

#include "pyxis/FileSpecifier.h"
#include "tool/scene/Context.h"

namespace kestms {

/// The set without the components that do not fit the first one: all of them with --skip-misfits,
/// else layers that --with-quality added. A warning names each with its reason.
Pyxis::FileSpecifier withoutMisfits(Context& context, const Pyxis::FileSpecifier& set);

/// Whether at least two components form a set without the others.
bool isSetWithoutMisfits(Session& session, const Pyxis::FileSpecifier& set);

}  // namespace kestms
