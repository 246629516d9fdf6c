#pragma once

#include <gdal_priv.h>

#include <memory>
#include <string>

#include "gdal/Grid.h"
#include "gdal/PixelSource.h"
#include "tool/raster/OutputGrid.h"

namespace kestgdal {

/// How a band takes its samples from a source.
struct Sampling {
    BandPlace place;
    /// The level of the source to read as it is, where the source is on the band's own grid.
    int level = 0;
    Pyxis::Size size;      ///< of the band
    Pyxis::Size block;     ///< its natural block
    double outside = 0.0;  ///< value beyond the source
};

/// A raster band with the samples of a source, each at its place. Windows of any size go down to
/// the source in one call; GDAL's block cache serves only what the source cannot do.
class PlacedBand : public GDALRasterBand {
  public:
    PlacedBand(GDALDataset* dataset, int number, GDALDataType type,
               std::shared_ptr<PixelSource> source, const Sampling& sampling, std::string path);

    /// Releases the source; later reads fail.
    virtual void close() { source_ = nullptr; }

  protected:
    CPLErr IReadBlock(int column, int row, void* data) override;
    CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data,
                     int bufferWidth, int bufferHeight, GDALDataType type, GSpacing pixelSpace,
                     GSpacing lineSpace, GDALRasterIOExtraArg* extra) override;

    const std::shared_ptr<PixelSource>& sharedSource() const { return source_; }
    const Sampling& sampling() const { return sampling_; }
    const std::string& path() const { return path_; }

  private:
    bool read(const kestms::RasterWindow& window, const Buffer& buffer);
    bool read(const kestms::PixelRectangle& window, const Buffer& buffer);

    std::shared_ptr<PixelSource> source_;
    Sampling sampling_;
    std::string path_;  ///< of the component, for messages
};

}  // namespace kestgdal
