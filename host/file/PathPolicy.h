#pragma once

#include <set>
#include <string>
#include <string_view>

namespace Pyxis {

/// What a path leads to.
enum class PathKind {
    Plain,      ///< a file of the system's
    InArchive,  ///< a member of one, or a compressed file, by GDAL's name for it ("/vsizip/...")
    Remote,     ///< something on the network
    Other,      ///< anything else that GDAL would open by a name of its own
};

PathKind kindOf(std::string_view path);

/// What the component codecs of this process may open beside plain files. A host that says nothing
/// has the strictest one: components come from documents, and documents from strangers.
struct PathPolicy {
    bool archives = false;             ///< members of archives
    bool remote = false;               ///< whatever a document names on the network
    bool virtualRasters = false;       ///< rasters that are made of other files
    std::set<std::string> named = {};  ///< on the network, named by the user
};

/// From now on, for the whole process.
void setPathPolicy(PathPolicy policy);
PathPolicy pathPolicy();

/// Why such a path may not be opened, for the user; empty when it may.
std::string_view whyNotAllowed(const std::string& path);

inline constexpr std::string_view kRemoteNotAllowed = "on the network, and not named by the user";
inline constexpr std::string_view kVirtualRasterNotAllowed =
    "a virtual raster, which may open any other file";

}  // namespace Pyxis
