#include "tool/raster/TileCopy.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "host/codecs/Places.h"
#include "host/gdal/ErrorCapture.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// GDAL's names for compressions whose data do not depend on anything outside of a tile.
constexpr std::array<std::pair<std::string_view, std::uint16_t>, 4> kCompressions = {{
    {"NONE", COMPRESSION_NONE},
    {"LZW", COMPRESSION_LZW},
    {"DEFLATE", COMPRESSION_ADOBE_DEFLATE},
    {"ZSTD", COMPRESSION_ZSTD},
}};

/// The sides of tiles that windows have whole (see windowsOf): those of most files.
constexpr std::array<std::uint32_t, 3> kTileSides = {kTileSide, 512, 1024};

/// Not mapped into memory: a file that is cut short meanwhile would end the program.
TiffFile openedForReading(const std::string& path) {
    return TiffFile(TIFFOpen(path.c_str(), "rm"));
}

std::uint16_t formatOf(GDALDataType type, const CPLStringList& options) {
    return GDALDataTypeIsFloating(type) != FALSE ? SAMPLEFORMAT_IEEEFP
           : GDALDataTypeIsSigned(type) != FALSE || options.FetchNameValue("PIXELTYPE") != nullptr
               ? SAMPLEFORMAT_INT
               : SAMPLEFORMAT_UINT;
}

/// The layout of the file that GDAL creates with tiles of that side.
std::optional<TileLayout> createdLayout(const OutputRaster& raster, GDALDataType type,
                                        const CPLStringList& options, std::uint32_t side) {
    const std::string_view name = options.FetchNameValueDef("COMPRESS", "");
    const auto compression = std::find_if(kCompressions.begin(), kCompressions.end(),
                                          [&](const auto& each) { return each.first == name; });
    if (compression == kCompressions.end() || GDALDataTypeIsComplex(type) != FALSE) {
        return std::nullopt;
    }
    return TileLayout{static_cast<std::uint32_t>(raster.size.width),
                      static_cast<std::uint32_t>(raster.size.height),
                      side,
                      side,
                      static_cast<std::uint16_t>(GDALGetDataTypeSizeBits(type)),
                      formatOf(type, options),
                      compression->second,
                      static_cast<std::uint16_t>(std::stoi(options.FetchNameValue("PREDICTOR")))};
}

/// The value of a field, or TIFF's default for one that is not there. (libtiff's own defaults are
/// not asked for: it takes the predictor from the state of any compression.)
template <typename Number>
Number numberIn(TIFF* file, std::uint32_t tag, Number otherwise) {
    Number value = otherwise;
    return TIFFGetField(file, tag, &value) != 0 ? value : otherwise;
}

TileLayout layoutIn(TIFF* file) {
    return {numberIn<std::uint32_t>(file, TIFFTAG_IMAGEWIDTH, 0),
            numberIn<std::uint32_t>(file, TIFFTAG_IMAGELENGTH, 0),
            numberIn<std::uint32_t>(file, TIFFTAG_TILEWIDTH, 0),
            numberIn<std::uint32_t>(file, TIFFTAG_TILELENGTH, 0),
            numberIn<std::uint16_t>(file, TIFFTAG_BITSPERSAMPLE, 1),
            numberIn<std::uint16_t>(file, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT),
            numberIn<std::uint16_t>(file, TIFFTAG_COMPRESSION, COMPRESSION_NONE),
            numberIn<std::uint16_t>(file, TIFFTAG_PREDICTOR, PREDICTOR_NONE)};
}

/// Whether the bytes of a tile mean the same in every file of the layout.
bool hasUsualBytes(TIFF* file) {
    return TIFFIsByteSwapped(file) == 0 &&
           numberIn<std::uint16_t>(file, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) ==
               FILLORDER_MSB2LSB &&
           numberIn<std::uint16_t>(file, TIFFTAG_SAMPLESPERPIXEL, 1) == 1;
}

/// The size of a stored tile; 0 when it is missing, or larger than any compression makes it.
std::size_t storedBytes(TIFF* file, std::uint32_t tile) {
    const std::uint64_t bytes = TIFFGetStrileByteCount(file, tile);
    return bytes / 2 <= static_cast<std::uint64_t>(TIFFTileSize(file))
               ? static_cast<std::size_t>(bytes)
               : 0;
}

bool hasAllTiles(TIFF* file) {
    for (std::uint32_t tile = 0; tile < TIFFNumberOfTiles(file); ++tile) {
        if (storedBytes(file, tile) == 0) {
            return false;
        }
    }
    return true;
}

std::uint32_t tileAt(TIFF* file, int x, int y, int band) {
    return TIFFComputeTile(file, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 0,
                           static_cast<std::uint16_t>(band));
}

bool isFirstOfPlainTiff(const OutputBand& band) {
    return band.source.driver == "GTiff" && band.source.prefix.empty() && band.source.band == 1 &&
           Pyxis::kindOf(band.band.componentPath) == Pyxis::PathKind::Plain;
}

}  // namespace

void CloseTiff::operator()(TIFF* file) const {
    TIFFClose(file);
}

TileCopy::TileCopy(const std::string& path, const TileLayout& layout)
    : layout_(layout), file_(TIFFOpen(path.c_str(), "r+")) {
    if (!file_ || layoutIn(file_.get()) != layout) {
        throw Failure(ExitCode::Unexpected, path, "GDAL has created another file than expected");
    }
}

bool TileCopy::copy(const std::string& component, int band, const RasterWindow& window) {
    const TiffFile from = openedForReading(component);
    bool isRead = from && layoutIn(from.get()) == layout_;
    const int side = layout_.side();
    if (window.x % side != 0 || window.y % side != 0) {
        throw Failure(ExitCode::Unexpected, component, "a tile would be copied in parts");
    }
    for (int y = window.y; y < window.y + window.height; y += side) {
        for (int x = window.x; x < window.x + window.width; x += side) {
            isRead = isRead && read(from.get(), tileAt(from.get(), x, y, 0));
            if (!isRead) {
                throw Failure(ExitCode::CannotRead, component, "its pixels cannot be read");
            }
            const auto size = static_cast<tmsize_t>(tile_.size());
            if (TIFFWriteRawTile(file_.get(), tileAt(file_.get(), x, y, band), tile_.data(),
                                 size) != size) {
                return false;
            }
        }
    }
    return true;
}

bool TileCopy::read(TIFF* from, std::uint32_t tile) {
    tile_.resize(storedBytes(from, tile));
    const auto size = static_cast<tmsize_t>(tile_.size());
    return size > 0 && TIFFReadRawTile(from, tile, tile_.data(), size) == size;
}

bool TileCopy::finish() {
    return TIFFFlush(file_.get()) != 0;
}

std::optional<TileLayout> sharedLayout(const OutputRaster& raster, GDALDataType type,
                                       const CPLStringList& creationOptions) {
    const Pyxis::ErrorCapture silence;
    const auto opened = [](const OutputBand& band) {
        return isFirstOfPlainTiff(band) ? openedForReading(band.band.componentPath) : nullptr;
    };
    const TiffFile first = opened(raster.bands.front());
    const std::uint32_t side = first ? layoutIn(first.get()).tileWidth : 0;
    if (std::find(kTileSides.begin(), kTileSides.end(), side) == kTileSides.end()) {
        return std::nullopt;
    }
    const std::optional<TileLayout> layout = createdLayout(raster, type, creationOptions, side);
    const auto isAlike = [&](const OutputBand& band) {
        const TiffFile file = opened(band);
        return file && layoutIn(file.get()) == *layout && hasUsualBytes(file.get()) &&
               hasAllTiles(file.get());
    };
    return layout && std::all_of(raster.bands.begin(), raster.bands.end(), isAlike) ? layout
                                                                                    : std::nullopt;
}

}  // namespace kestms
