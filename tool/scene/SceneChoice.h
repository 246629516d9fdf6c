#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "tool/scene/Context.h"
#include "tool/scene/Scenes.h"

namespace kestms {

/// A file that arguments name.
struct InputEntry {
    std::string path;
    std::optional<int> frame = {};  ///< none: all
    bool isNamed = false;           ///< by itself
};

/// The scenes of products that the metadata files among the paths describe, from their folders and
/// those below; without the metadata files, which it removes from the paths.
std::vector<Scene> scenesDescribedBy(Session& session, std::vector<std::string>& paths);

/// Decides which files of scenes become components, and says in one line what is left out.
class SceneChoice {
  public:
    /// `entries` must outlive this.
    SceneChoice(Context& context, std::vector<InputEntry>& entries)
        : context_(context), entries_(entries) {}

    /// Adds the one scene in a folder, or the one of several that the user chose.
    void takeFolder(const std::string& folder);
    /// Adds the scene that a metadata file describes; false without one.
    bool takeSceneOf(const std::string& metadata);
    /// As `takeFolder` for a glob; files of no product need not share a folder.
    void takeGlob(const std::string& pattern, const std::vector<std::string>& files);
    /// Files named one by one, perhaps expanded from a glob by the shell: sets layers aside, and
    /// warns about likely accidents.
    void sortNamedFiles();

  private:
    /// No output may replace files that were found or named, whether their scene is chosen or not.
    void protect(const std::vector<std::string>& files);
    /// That which the user named. Throws a Failure with ExitCode::Usage when there is none.
    const Scene& chosen(const std::vector<Scene>& scenes);
    /// Scenes of products come first, then rasters for which `isNear` holds, then all others.
    template <typename IsNear>
    void takeScene(const std::string& name, const std::vector<Scene>& scenes, IsNear isNear);
    /// By path; a file may have one for each of several frames.
    using NamedEntries = std::unordered_map<std::string, std::vector<InputEntry>>;

    void sortNamedScenes(const std::vector<Scene>& scenes);
    void sortScene(const Scene& scene, const NamedEntries& dropped);
    /// Removes and returns the entries that the user named of files that the scenes set aside, and
    /// of all files of scenes other than a wanted one.
    NamedEntries dropNamed(const std::vector<Scene>& scenes, const Scene* wanted);
    /// Reports in one line what is left out, unless the user includes it: then with the frames of
    /// `named`.
    void setAside(const std::string& name, const std::vector<SetAside>& files,
                  const NamedEntries& named = {});

    Context& context_;
    std::vector<InputEntry>& entries_;
    std::vector<Scene> taken_;
};

}  // namespace kestms
