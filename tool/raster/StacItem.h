#pragma once

#include <string>
#include <vector>

#include "tool/scene/AcquisitionTime.h"
#include "tool/scene/OpenedSet.h"
#include "tool/scene/Scenes.h"
#include "tool/terminal/Json.h"

namespace kestms {

/// Facts of a STAC item that are not in the scene's files.
struct StacScene {
    std::string id;
    std::string title;  ///< the product's name; may be empty
    TimeSpan time;
    std::string metadataFile;      ///< the product's metadata text file; may be empty
    std::vector<SetAside> layers;  ///< quality and others, besides the bands
};

/// How a STAC item names files.
struct StacLinks {
    std::string item;       ///< path of the item; empty if unknown
    bool absolute = false;  ///< "file:///..." instead of relative to the item
};

/// A STAC item (version 1.0) with the extensions for projections, electro-optical data and rasters:
/// an asset a file, with the band of each of its frames. Throws a Failure with ExitCode::CannotRead
/// for a component that GDAL cannot open.
Json stacItem(const OpenedSet& set, const StacScene& scene, const StacLinks& links);

}  // namespace kestms
