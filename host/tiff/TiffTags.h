#pragma once

#include <cstdint>

/// Tags of TIFF 6.0, of GeoTIFF 1.1 and of GDAL's own fields.
namespace Pyxis::tag {

constexpr std::uint64_t kWidth = 256;
constexpr std::uint64_t kHeight = 257;
constexpr std::uint64_t kBitsPerSample = 258;
constexpr std::uint64_t kCompression = 259;
constexpr std::uint64_t kPhotometric = 262;
constexpr std::uint64_t kDescription = 270;
constexpr std::uint64_t kStripOffsets = 273;
constexpr std::uint64_t kOrientation = 274;
constexpr std::uint64_t kSamplesPerPixel = 277;
constexpr std::uint64_t kRowsPerStrip = 278;
constexpr std::uint64_t kStripLengths = 279;
constexpr std::uint64_t kPlanarConfiguration = 284;
constexpr std::uint64_t kSoftware = 305;
constexpr std::uint64_t kDateTime = 306;
constexpr std::uint64_t kPredictor = 317;
constexpr std::uint64_t kColourMap = 320;
constexpr std::uint64_t kTileWidth = 322;
constexpr std::uint64_t kTileHeight = 323;
constexpr std::uint64_t kTileOffsets = 324;
constexpr std::uint64_t kTileLengths = 325;
constexpr std::uint64_t kSampleFormat = 339;
constexpr std::uint64_t kPixelScale = 33550;
constexpr std::uint64_t kTiePoints = 33922;
constexpr std::uint64_t kTransformation = 34264;
constexpr std::uint64_t kKeyDirectory = 34735;
constexpr std::uint64_t kDoubleParameters = 34736;
constexpr std::uint64_t kAsciiParameters = 34737;
constexpr std::uint64_t kGdalMetadata = 42112;
constexpr std::uint64_t kGdalNoData = 42113;

}  // namespace Pyxis::tag
