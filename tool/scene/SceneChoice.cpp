#include "tool/scene/SceneChoice.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <unordered_set>

#include "tool/scene/Components.h"
#include "tool/scene/MetadataFile.h"
#include "tool/scene/OpenedSet.h"
#include "tool/scene/RasterDirectory.h"
#include "tool/scene/SceneNames.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

using Strings = std::vector<std::string>;

bool isDirectlyIn(const Scene& scene, const std::string& folder) {
    const std::string inside = insideOf(folder);
    const fs::path place = inside.empty() ? folder : inside;
    const fs::path parent = fs::path(scene.files.front()).parent_path();
    return (parent / "").lexically_normal() == (place / "").lexically_normal();
}

/// The rasters below a folder; none instead of a Failure.
Strings rastersBelow(const std::string& folder) {
    try {
        return rasterFilesBelow(folder).rasters;
    } catch (const Failure&) {
        throwIfInterrupted();
        return {};
    }
}

/// What the codec calls a scene; empty if it is no set.
std::string referenceNameOf(Context& context, const Scene& scene) {
    throwIfInterrupted();
    try {
        const OpenedSet set(context.session(), setOf(componentsIn(context, scene.files)));
        return set.description().referenceName;
    } catch (const Failure&) {
        throwIfInterrupted();
        return {};
    }
}

}  // namespace

void SceneChoice::protect(const std::vector<std::string>& files) {
    for (const std::string& path : files) {
        context_.inputs.addRaster(path);
    }
}

template <typename IsNear>
void SceneChoice::takeScene(const std::string& name, const std::vector<Scene>& scenes,
                            IsNear isNear) {
    std::vector<Scene> choice;
    const auto choose = [&](auto wanted) {
        if (choice.empty()) {
            std::copy_if(scenes.begin(), scenes.end(), std::back_inserter(choice), wanted);
        }
    };
    choose([](const Scene& scene) { return !scene.product.empty(); });
    choose(isNear);
    choose([](const Scene&) { return true; });
    if (!context_.scene.empty()) {
        choice = {chosen(scenes)};
    }
    if (choice.size() > 1) {
        throw Failure(ExitCode::Usage, name,
                      "holds " + std::to_string(choice.size()) +
                          " scenes; choose one with --scene NAME: " +
                          sceneNames(choice, context_.mostScenesNamed));
    }
    const Scene& scene = taken_.emplace_back(choice.front());
    if (scene.files.empty() && !context_.withQuality) {
        throw Failure(ExitCode::NotDecodable, name,
                      "holds no bands, but " + summaryOf(scene.setAside));
    }
    for (const std::string& path : scene.files) {
        entries_.push_back({path});
    }
    std::vector<SetAside> aside = scene.setAside;
    if (!scene.product.empty() && context_.scene.empty()) {
        for (const Scene& other : scenes) {
            for (const std::string& path : other.product.empty() ? other.files : Strings()) {
                aside.push_back({path, kPartOfNoScene, false});
            }
        }
    }
    setAside(name, aside);
}

/// A scene of no product may go by what the codec calls it, as `kestms scenes` shows it.
const Scene& SceneChoice::chosen(const std::vector<Scene>& scenes) {
    if (const Scene* found = findScene(scenes, context_.scene)) {
        return *found;
    }
    for (const Scene& scene : scenes) {
        if (scene.product.empty() && referenceNameOf(context_, scene) == context_.scene) {
            return scene;
        }
    }
    throw Failure(ExitCode::Usage, context_.scene,
                  "no such scene; there are " + sceneNames(scenes));
}

void SceneChoice::takeFolder(const std::string& folder) {
    const FolderContents contents = rasterFilesBelow(folder);
    protect(contents.rasters);
    noteUnopened(context_, folder, contents);
    takeScene(folder, scenesAmong(context_.session(), contents.rasters),
              [&folder](const Scene& scene) { return isDirectlyIn(scene, folder); });
}

std::vector<Scene> scenesDescribedBy(Session& session, std::vector<std::string>& paths) {
    std::map<std::string, std::set<std::string>> byFolder;  // a folder can be large
    std::map<std::string, std::string> spelled;  // paths as the rasters are spelled there
    for (const std::string& path : paths) {
        std::error_code error;
        if (mayDescribeScene(path) && fs::is_regular_file(path, error)) {
            const std::string folder = describedFolder(path);
            spelled[path] = fs::path(folder) / fs::path(path).filename();
            byFolder[folder].insert(spelled[path]);
        }
    }
    std::vector<Scene> scenes;
    std::set<std::string> used;
    for (const auto& each : byFolder) {
        const std::set<std::string>& metadata = each.second;
        Strings files = rastersBelow(each.first);
        files.insert(files.end(), metadata.begin(), metadata.end());
        for (Scene& scene : scenesAmong(session, files)) {
            const std::size_t own = std::erase_if(scene.setAside, [&](const SetAside& file) {
                return !scene.product.empty() && metadata.contains(file.path) &&
                       describesScene(file.path, scene.name) && used.insert(file.path).second;
            });
            if (own > 0) {
                scenes.push_back(std::move(scene));
            }
        }
    }
    std::erase_if(paths, [&](const std::string& path) { return used.contains(spelled[path]); });
    return scenes;
}

bool SceneChoice::takeSceneOf(const std::string& metadata) {
    Strings paths = {metadata};
    const std::vector<Scene> scenes = scenesDescribedBy(context_.session(), paths);
    if (scenes.empty()) {
        return false;
    }
    context_.inputs.add(metadata);
    takeScene(metadata, {scenes.front()}, [](const Scene&) { return true; });
    return true;
}

void SceneChoice::takeGlob(const std::string& pattern, const std::vector<std::string>& files) {
    protect(files);
    const std::vector<Scene> scenes = scenesAmong(context_.session(), files);
    if (scenes.front().product.empty()) {
        for (const std::string& path : files) {
            entries_.push_back({path});
        }
    } else {
        takeScene(pattern, scenes, [](const Scene&) { return false; });
    }
}

void SceneChoice::sortNamedFiles() {
    std::vector<std::string> paths;
    std::set<std::string> seen;
    for (const InputEntry& entry : entries_) {
        // A file may be there with several frames.
        if (entry.isNamed && seen.insert(entry.path).second) {
            paths.push_back(entry.path);
        }
    }
    protect(paths);
    const std::vector<Scene> scenes = scenesAmong(context_.session(), paths);
    if (!scenes.empty() && !scenes.front().product.empty()) {
        sortNamedScenes(scenes);
    } else if (!taken_.empty() && !taken_.front().product.empty()) {
        for (const std::string& path : paths) {
            context_.warn(path, "is part of no scene, but " + taken_.front().name + " is one");
        }
    }
    if (taken_.size() > 1 && std::any_of(taken_.begin(), taken_.end(), [](const Scene& scene) {
            return !scene.product.empty();
        })) {
        context_.note("files of " + std::to_string(taken_.size()) +
                      " scenes are given: " + sceneNames(taken_));
    }
}

void SceneChoice::sortNamedScenes(const std::vector<Scene>& scenes) {
    const Scene* wanted = context_.scene.empty() ? nullptr : &chosen(scenes);
    const NamedEntries dropped = dropNamed(scenes, wanted);
    for (const Scene& scene : scenes) {
        if (wanted != nullptr && &scene != wanted) {
            continue;
        }
        const bool hasRasters =
            !scene.files.empty() || std::any_of(scene.setAside.begin(), scene.setAside.end(),
                                                [](const SetAside& each) { return each.isLayer; });
        if (hasRasters) {  // otherwise metadata of another scene that is given
            taken_.push_back(scene);
        }
        sortScene(scene, dropped);
    }
}

void SceneChoice::sortScene(const Scene& scene, const NamedEntries& dropped) {
    std::vector<SetAside> aside;
    for (const SetAside& each : scene.setAside) {
        if (each.reason == kPartOfNoScene) {
            context_.warn(each.path, "is part of no scene, but " + scene.name + " is one");
        } else {
            aside.push_back(each);
        }
    }
    setAside(scene.name, aside, dropped);
}

SceneChoice::NamedEntries SceneChoice::dropNamed(const std::vector<Scene>& scenes,
                                                 const Scene* wanted) {
    std::unordered_set<std::string> unwanted;
    for (const Scene& scene : scenes) {
        const bool isOther = wanted != nullptr && &scene != wanted;
        if (isOther) {
            unwanted.insert(scene.files.begin(), scene.files.end());
        }
        for (const SetAside& each : scene.setAside) {
            if (isOther || each.reason != kPartOfNoScene) {
                unwanted.insert(each.path);
            }
        }
    }
    const auto first =
        std::stable_partition(entries_.begin(), entries_.end(), [&unwanted](const auto& entry) {
            return !entry.isNamed || unwanted.count(entry.path) == 0;
        });
    NamedEntries dropped;
    std::for_each(first, entries_.end(),
                  [&dropped](const auto& entry) { dropped[entry.path].push_back(entry); });
    entries_.erase(first, entries_.end());
    return dropped;
}

void SceneChoice::setAside(const std::string& name, const std::vector<SetAside>& files,
                           const NamedEntries& named) {
    std::vector<SetAside> left;
    bool canTake = false;
    for (const SetAside& each : files) {
        if (each.isLayer && context_.withQuality) {
            context_.layers.insert(each.path);
            const auto found = named.find(each.path);
            const auto entries =
                found != named.end() ? found->second : std::vector<InputEntry>{{each.path}};
            entries_.insert(entries_.end(), entries.begin(), entries.end());
        } else {
            context_.inputs.addRaster(each.path);
            const bool isListed = (each.isLayer || each.reason == kPreview) && context_.listsLayers;
            (isListed ? context_.layersAside : left).push_back(each);
            canTake = canTake || (each.isLayer && !isListed);
        }
    }
    if (!left.empty()) {
        context_.warn(name, "set aside: " + summaryOf(left) +
                                (canTake ? " (--with-quality takes what fits)" : ""));
    }
}

}  // namespace kestms
