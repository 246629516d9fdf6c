#pragma once

#include <string>
#include <vector>

#include "tool/scene/Session.h"

// The scenes among files: rasters of one product and one scene name.

namespace kestms {

/// The reason for a raster beside a scene.
inline constexpr const char* kPartOfNoScene = "part of no scene";

/// The reason for a picture that comes with a scene.
inline constexpr const char* kPreview = "preview";

/// The reason for a file that describes a scene.
inline constexpr const char* kMetadata = "metadata";

/// A raster that is not offered to the codec.
struct SetAside {
    std::string path;
    std::string reason;    ///< a role ("quality"), or a few words that follow a number
    bool isLayer = false;  ///< comes with the bands: quality, mask, angle, ancillary layer
};

/// The files of one scene. Rasters of no known product that share a folder count as one, too.
struct Scene {
    std::string product;             ///< its id in the catalogue; empty when no product is known
    std::string productName;         ///< for people
    std::string name;                ///< the scene's; the folder's when no product is known
    std::string folder;              ///< that holds it; of a ".SAFE" product the whole
    std::string date;                ///< "2018-06-29"; empty when the name has none
    std::vector<std::string> files;  ///< of the bands, in their order
    std::vector<SetAside> setAside;
};

/// Sorts rasters into scenes: those of known products first, each group in the order of its first
/// files in `paths`. If a band has several pixel sizes, the product's own is used. A raster of no
/// product in the folder of a scene is set aside there. Every path is in one scene.
std::vector<Scene> scenesAmong(Session& session, const std::vector<std::string>& paths);

/// "3 quality, 7 ancillary"; empty when nothing was set aside.
std::string summaryOf(const std::vector<SetAside>& setAside);

}  // namespace kestms
