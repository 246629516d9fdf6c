#pragma once

#include <gdal_priv.h>

#include <memory>

#include "gdal/ComponentFiles.h"
#include "pyxis/Geometry.h"
#include "tool/raster/RasterWindow.h"
#include "tool/scene/OpenedSet.h"

namespace kestgdal {

/// The destination of samples, in GDAL's terms.
struct Buffer {
    void* data = nullptr;
    int width = 0;
    int height = 0;
    GDALDataType type = GDT_Unknown;
    GSpacing pixelSpace = 0;
    GSpacing lineSpace = 0;

    unsigned char* at(int column, int row) const {
        return static_cast<unsigned char*>(data) + row * lineSpace + column * pixelSpace;
    }
};

/// Pixels of one component: its samples or its mask, at full size (level 0) and reduced.
class PixelSource {
  public:
    PixelSource() = default;
    PixelSource(const PixelSource&) = delete;
    PixelSource& operator=(const PixelSource&) = delete;
    virtual ~PixelSource() = default;

    /// Number of reduced levels.
    virtual int numLevels() = 0;
    virtual Pyxis::Size levelSize(int level) = 0;
    /// Reads a window of a level; the nearest sample counts where the buffer has another size.
    /// False when that cannot be done, or not with samples of the buffer's type.
    virtual bool read(int level, const kestms::RasterWindow& window, const Buffer& buffer) = 0;
};

/// GDAL's type for a band's samples; GDAL treats signed bytes as bytes.
GDALDataType sampleTypeOf(const kestms::Band& band);

/// The samples of a band, through its frame. `set` and `files` must outlive it, `band` is one of
/// the set's.
std::unique_ptr<PixelSource> samplesOf(const kestms::OpenedSet& set, const kestms::Band& band,
                                       ComponentFiles& files);

/// The component's own mask for the band; null without one.
std::unique_ptr<PixelSource> maskOf(const kestms::Band& band, ComponentFiles& files);

}  // namespace kestgdal
