#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/file/Export.h"
#include "host/raster/RasterFacts.h"

namespace Pyxis {

/// An open GDAL dataset, without GDAL's headers. One thread at a time may use it. Bands count
/// from 1. GDAL prints nothing meanwhile.
class PYXIS_CODECS_API Dataset {
  public:
    Dataset() = default;
    Dataset(const Dataset&) = delete;
    Dataset& operator=(const Dataset&) = delete;
    virtual ~Dataset() = default;  ///< closes it

    virtual int numBands() const = 0;
    /// Every band as a frame. Colour tables are read only if there may be one.
    virtual std::vector<FrameFacts> frames(bool mayHaveColours = true) const = 0;
    virtual std::optional<GeoTransform> transform() const = 0;
    /// The coordinate system; its text is empty when the dataset has none.
    virtual CoordinateSystem coordinateSystem() const = 0;
    /// An item of the metadata, of the dataset or of a band; nothing when there is none.
    virtual std::optional<std::string> item(const char* key, const char* domain = "") const = 0;
    virtual std::optional<std::string> bandItem(int band, const char* key,
                                                const char* domain) const = 0;
    /// The decoded bytes of an item that consists of a length and base 64; empty without one.
    virtual std::string bytesOfItem(const char* key, const char* domain) const = 0;
    virtual int numItems(const char* domain) const = 0;
    /// The files of the dataset, as GDAL opened them, the main one first.
    virtual std::vector<std::string> files() const = 0;
    /// Whether GDAL can read the last pixel of the last band, and so its whole block. False without
    /// reading when that block takes more than 64 MiB.
    virtual bool canReadLastPixel() const = 0;

    /// The reduced-resolution levels of a band. Level 0 is the band itself.
    virtual int numOverviews(int band) const = 0;
    virtual bool hasLevel(int band, int level) const = 0;
    virtual ChannelRange range(int band) const = 0;
    /// Reads the window of `request` from a level of a band, as samples of `format`. False when
    /// there is no such level, when window, buffer or sample type do not fit, or the pixels cannot
    /// be read. Without `overviews` GDAL does not look for any.
    virtual bool read(int band, int level, SampleFormat format, const PixelRequest& request,
                      bool overviews) const = 0;
};

/// The size in bytes of a block of pixels of `bands` interleaved bands; UINT64_MAX on overflow.
std::uint64_t bytesAtOnce(const FrameFacts& facts, std::size_t bands = 1);

}  // namespace Pyxis
