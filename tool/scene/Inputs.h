#pragma once

#include <string>
#include <vector>

#include "pyxis/FileSpecifier.h"
#include "tool/scene/Components.h"
#include "tool/scene/Context.h"
#include "tool/scene/Scenes.h"

namespace kestms {

/// What to do with a missing file that the user named.
enum class MissingFile {
    Fail,  ///< a Failure with ExitCode::CannotRead
    Keep,  ///< an unreadable component
};

/// The set that command arguments name, as a compound specifier. An argument is
///  - FILE: every frame of the file (frame 0 of a file that no codec reads);
///  - FILE#FRAME: one frame, 0 for the first; a file whose own name is the whole argument wins;
///  - a directory: its raster files in natural order of their names;
///  - a component list document: its components;
///  - @FILE: a text file with one of the above a line, and comments after "#" at the start of
///    a line or after a blank;
///    "-" reads the same from standard input. Both may be documents instead.
/// A document by itself is used unchanged. Paths are kept as given; a component named twice causes
/// a warning. Everything read is added to `context.inputs`. Throws a Failure for what cannot be
/// read, with the codes of `ExitCode`.
Pyxis::FileSpecifier readSet(const std::vector<std::string>& arguments, Context& context,
                             MissingFile missing);

struct SceneList {
    std::vector<Scene> scenes;
    bool isWhole = true;  ///< whether every path led to a scene
};

/// The scenes in folders (and those below them), globs and files. Reports each path that is not
/// there or holds no rasters, each damaged archive, and metadata of no scene.
SceneList readScenes(const std::vector<std::string>& paths, Context& context);

}  // namespace kestms
