#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pyxis {

/// The six numbers x0, xColumn, xRow, y0, yColumn, yRow: where a place in the raster, counted in
/// pixels from its first corner, lies in the world.
using GeoTransform = std::array<double, 6>;

/// The names that a raster's world file may have, the likeliest first; none for a name without an
/// extension. Of "a.tif" they are a.tfw, a.tifw and a.wld, in small and in capital letters.
std::vector<std::string> worldFilesOf(const std::string& path);

/// The transform that the first readable world file beside a raster gives. Only a regular file of a
/// few kilobytes counts, so that a pipe cannot block and a huge file costs nothing.
std::optional<GeoTransform> readWorldFile(const std::string& rasterPath);

/// The transform in the text of a world file: six numbers, one on each line, the position being
/// that of the centre of the first pixel. Nothing when a number is missing or the pixel is flat.
std::optional<GeoTransform> worldFileTransform(std::string_view text);

}  // namespace Pyxis
