#pragma once

#include "pyxis/FileSpecifier.h"
#include "tool/scene/Context.h"

namespace kestms {

/// The set without the components that do not fit the first one: all of them with --skip-misfits,
/// else layers that --with-quality took. Each is named in a warning with its reason.
Pyxis::FileSpecifier withoutMisfits(Context& context, const Pyxis::FileSpecifier& set);

/// Whether components fit together although others keep them from being a set.
bool isSetWithoutMisfits(Session& session, const Pyxis::FileSpecifier& set);

}  // namespace kestms
