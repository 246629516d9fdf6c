#pragma once

#include <set>
#include <string>
#include <string_view>

#include "host/file/Export.h"

namespace Pyxis {

/// The kind of file that a path names.
enum class PathKind {
    Plain,      ///< a file in the file system
    InArchive,  ///< a member of one, or a compressed file, by GDAL's name for it ("/vsizip/...")
    Remote,     ///< something on the network
    Other,      ///< any other special name of GDAL's
};

PYXIS_CODECS_API PathKind kindOf(std::string_view path);

/// What the component codecs of this process may open besides plain files. The default is the
/// strictest: components come from documents, and documents are untrusted.
struct PathPolicy {
    bool archives = false;             ///< members of archives
    bool remote = false;               ///< whatever a document names on the network
    bool virtualRasters = false;       ///< which open whatever they name
    std::set<std::string> named = {};  ///< on the network, named by the user
};

/// Sets the policy for the whole process.
void setPathPolicy(PathPolicy policy);
PathPolicy pathPolicy();

/// Whether this thread may open virtual rasters.
bool allowsVirtualRasters();

/// Refuses virtual rasters on this thread for its lifetime, whatever the policy.
class PYXIS_CODECS_API WithoutVirtualRasters {
  public:
    explicit WithoutVirtualRasters(bool refuse = true);
    WithoutVirtualRasters(const WithoutVirtualRasters&) = delete;
    WithoutVirtualRasters& operator=(const WithoutVirtualRasters&) = delete;
    ~WithoutVirtualRasters();

  private:
    bool before_;
};

/// Why such a path may not be opened, for the user; empty when it may.
std::string_view whyNotAllowed(const std::string& path);

inline constexpr std::string_view kRemoteNotAllowed = "on the network, and not named by the user";
inline constexpr std::string_view kVirtualRasterNotAllowed =
    "a virtual raster, which may open any other file";

}  // namespace Pyxis
