#pragma once

#include <cpl_string.h>
#include <gdal.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tool/raster/OutputGrid.h"
#include "tool/raster/RasterWindow.h"

struct tiff;  // libtiff's

namespace kestms {

struct CloseTiff {
    void operator()(tiff* file) const;
};
/// An open file; null when it could not be opened.
using TiffFile = std::unique_ptr<tiff, CloseTiff>;

/// How a TIFF file stores samples: between files of one layout, tiles can be copied as they are.
struct TileLayout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t tileWidth = 0;
    std::uint32_t tileHeight = 0;
    std::uint16_t bits = 0;    ///< of a sample
    std::uint16_t format = 0;  ///< this and the others in TIFF's numbers
    std::uint16_t compression = 0;
    std::uint16_t predictor = 0;

    bool operator==(const TileLayout& other) const = default;
    /// Of a layout that is shared, whose tiles are square.
    int side() const { return static_cast<int>(tileWidth); }
};

/// The layout of the file that GDAL creates for the raster with these options and tiles of some
/// side, if all of its bands are plain TIFF files of that layout, with one band and without missing
/// tiles.
std::optional<TileLayout> sharedLayout(const OutputRaster& raster, GDALDataType type,
                                       const CPLStringList& creationOptions);

/// Puts tiles of components into a file that GDAL has created without any. Compressing them anew
/// would take most of the time of an export, for the same result.
class TileCopy {
  public:
    /// The file has no tiles until it is finished. Throws a Failure with ExitCode::Unexpected if it
    /// has another layout.
    TileCopy(const std::string& path, const TileLayout& layout);

    /// Copies the tiles of a window whose edges are those of tiles or of the raster; bands count
    /// from 0. Returns whether they could be written. Throws a Failure with ExitCode::CannotRead,
    /// or with ExitCode::Unexpected for another window.
    bool copy(const std::string& component, int band, const RasterWindow& window);
    /// Returns whether the whole file could be written.
    bool finish();

  private:
    bool read(tiff* from, std::uint32_t tile);

    TileLayout layout_;
    TiffFile file_;
    std::vector<std::byte> tile_;
};

}  // namespace kestms
