#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tool/scene/Scenes.h"

// How people name scenes, and messages do.

namespace kestms {

/// The scene of that name, a product's before a folder's; null without one. `name` may be a
/// pattern, and the name of a product or of a folder on the way to a scene. Throws a Failure with
/// ExitCode::Usage that lists them when there are several.
const Scene* findScene(const std::vector<Scene>& scenes, const std::string& name);

/// How many scenes a message names.
inline constexpr std::size_t kMostScenesNamed = 10;

/// The names of scenes for a message, with commas, cut after `most`. Where several have one name,
/// their products and folders tell them apart.
std::string sceneNames(const std::vector<Scene>& scenes, std::size_t most = kMostScenesNamed);

}  // namespace kestms
