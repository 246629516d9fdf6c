#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pyxis/FileSpecifier.h"
#include "pyxis/ReadImageFile.h"
#include "tool/scene/Context.h"

namespace kestms {

/// One file of a set and the frame of it that holds the band.
struct Component {
    std::string path;
    int frame = 0;
};

/// Adds a component for every frame of the file; frame 0 of a file that no codec reads. Throws
/// Failure when a file of several bands makes the set too large.
void addFrames(const std::string& path, std::vector<Component>& components);

/// A component for every frame of every file, with files opened ahead; one for a file that no codec
/// reads.
std::vector<Component> componentsIn(Context& context, const std::vector<std::string>& files);

/// The components of a set in order; those without a path have an empty one.
std::vector<Component> componentsOf(const Pyxis::FileSpecifier& set);

/// The files of the image at a path, the path itself first: a header's pixels are in other files.
/// Then the files beside it that describe or place it.
std::vector<std::string> filesOf(const std::string& path);

/// A compound specifier that lists the components.
Pyxis::FileSpecifier setOf(const std::vector<Component>& components);

/// Whether a codec reads the file.
bool isDecodable(const std::string& path);

/// The image in a file, through the codec that reads it; null when none does.
std::unique_ptr<Pyxis::ReadImageFileInterface> openImage(const std::string& path);

/// Whether only GDAL can read the path: it leads into an archive or to the network.
bool isVirtual(const std::string& path);

/// The absolute path of a component.
std::string absoluteName(const std::string& path);

/// Why no codec reads the file, in a few words; only for such files.
std::string whyNotReadable(const std::string& path);

}  // namespace kestms
