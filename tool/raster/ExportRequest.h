#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

// What a user can ask of an output; without GDAL, as the command line knows it.

namespace kestms {

/// Which grid the bands share.
struct GridOptions {
    enum class Resolution { Finest, Coarsest, Given };

    Resolution resolution = Resolution::Finest;
    double pixelSize = 0;  ///< for Resolution::Given, in units of the coordinate system
    bool split = false;    ///< a raster for each pixel size, with that size in its name
    std::optional<std::array<double, 4>> box;     ///< left, bottom, right, top in the world
    std::optional<std::array<double, 4>> window;  ///< column, row, width, height in the grid
};

/// Which bands of a set become a raster, how and where.
struct ExportRequest {
    std::vector<std::string> inputs;
    std::string output;
    bool overwrite = false;
    std::vector<std::string> bands;  ///< words of `selectBands`
    std::vector<std::string> names;  ///< words of `renameBands`
    bool displayOrder = false;
    GridOptions grid;
    std::string resampling = "nearest";
    std::optional<double> noData;
    bool withStyle = true;
};

struct GeoTiffOptions {
    std::optional<std::string> compression;  ///< GDAL's name; one that loses nothing
    bool cloudOptimized = false;
    std::vector<std::string> creationOptions;  ///< GDAL's, as NAME=VALUE; they go before ours
};

}  // namespace kestms
