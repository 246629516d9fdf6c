#include "tool/scene/SceneNames.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

using SceneMatcher = bool (*)(const Scene& scene, const std::string& name);

bool fits(const std::string& text, const std::string& pattern) {
    return fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD) == 0;
}

/// From the strictest to the loosest; the first that finds scenes decides. Products of one day may
/// have one scene name.
constexpr SceneMatcher kSceneMatchers[] = {
    [](const Scene& scene, const std::string& name) { return scene.name == name; },
    [](const Scene& scene, const std::string& name) { return fits(scene.name, name); },
    [](const Scene& scene, const std::string& name) {
        return fits(scene.product, name) || fits(scene.productName, name);
    },
    [](const Scene& scene, const std::string& name) {
        const std::filesystem::path folder = scene.folder;
        return std::any_of(folder.begin(), folder.end(),
                           [&name](const auto& part) { return fits(part.string(), name); });
    },
};

using Scenes = std::vector<const Scene*>;

/// A scene for a message: its name, and what distinguishes it from others of that name.
std::string labelOf(const Scene& scene, const Scenes& scenes) {
    const auto sameName = std::count_if(scenes.begin(), scenes.end(), [&scene](const Scene* each) {
        return each->name == scene.name;
    });
    return sameName == 1 ? scene.name
                         : scene.name + " (" + (scene.product.empty() ? "" : scene.product + ", ") +
                               scene.folder + ")";
}

std::string labelsOf(const Scenes& scenes, std::size_t most) {
    std::string labels;
    for (std::size_t i = 0; i < std::min(scenes.size(), most); ++i) {
        labels += (i == 0 ? "" : ", ") + labelOf(*scenes[i], scenes);
    }
    return scenes.size() > most ? labels + " and others" : labels;
}

}  // namespace

const Scene* findScene(const std::vector<Scene>& scenes, const std::string& name) {
    for (const SceneMatcher matches : kSceneMatchers) {
        Scenes found;
        for (const Scene& scene : scenes) {
            if (matches(scene, name)) {
                found.push_back(&scene);
            }
        }
        const auto isOfProduct = [](const Scene* scene) { return !scene->product.empty(); };
        if (std::any_of(found.begin(), found.end(), isOfProduct)) {
            std::erase_if(found, std::not_fn(isOfProduct));
        }
        if (found.size() > 1) {
            throw Failure(ExitCode::Usage, name,
                          "names several scenes; --scene takes the name of a product or a folder "
                          "too: " +
                              labelsOf(found, kMostScenesNamed));
        }
        if (!found.empty()) {
            return found.front();
        }
    }
    return nullptr;
}

std::string sceneNames(const std::vector<Scene>& scenes, std::size_t most) {
    Scenes all;
    std::transform(scenes.begin(), scenes.end(), std::back_inserter(all),
                   [](const Scene& scene) { return &scene; });
    return labelsOf(all, most);
}

}  // namespace kestms
