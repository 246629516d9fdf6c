#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The six numbers x0, xColumn, xRow, y0, yColumn, yRow, which map raster positions, in pixels from
/// the first corner, to world coordinates.
using GeoTransform = std::array<double, 6>;

/// The names that a raster's world file may have, the likeliest first; none for a name without an
/// extension. For "a.tif" they are a.tfw, a.tifw and a.wld, each also as a.TFW and a.Tfw.
std::vector<std::string> worldFilesOf(const std::string& path);

/// The transform of the first readable world file beside a raster. Only a regular file of a few
/// kilobytes counts, so that a pipe cannot block and a huge file costs nothing.
std::optional<GeoTransform> readWorldFile(const std::string& rasterPath);

/// The transform in the text of a world file: six numbers, one on each line; the position is that
/// of the centre of the first pixel. Nothing when a number is missing or the pixel has no area.
std::optional<GeoTransform> worldFileTransform(std::string_view text);

}  // namespace Pyxis
