#pragma once

#include <string>
#include <vector>

// Files in which producers describe their scenes, by name.

namespace kestms {

/// By its extension: what producers write beside rasters for people and programs to read.
bool isMetadataFile(const std::string& path);

/// Whether it is of Landsat: lines of "KEY = VALUE".
bool isLandsatMetadata(const std::string& path);

/// Whether such a file may stand for its scene: a reader's own notes beside a scene do not.
bool mayDescribeScene(const std::string& path);

/// Whether a file that may describe a scene can be that of the one called `scene`.
bool describesScene(const std::string& path, const std::string& scene);

/// The folder whose rasters such a file describes: its own, or the Sentinel-2 product's for
/// "DATASTRIP/NAME/MTD_DS.xml". It ends in a name, which scenes may have.
std::string describedFolder(const std::string& path);

/// The path of a scene's metadata file, NAME_MTL.txt beside `files` or that of a Sentinel-2 tile
/// beside or above them; empty if there is none.
std::string metadataFileBeside(const std::string& name, const std::vector<std::string>& files);

}  // namespace kestms
