#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/gdal/Opening.h"
#include "host/raster/Dataset.h"

class GDALRasterBand;

namespace Pyxis {

/// A dataset that GDAL opened.
class GdalDataset final : public Dataset {
  public:
    GdalDataset(DatasetPointer dataset, std::size_t part)
        : dataset_(std::move(dataset)), part_(part) {}
    ~GdalDataset() override;

    int numBands() const override;
    std::vector<FrameFacts> frames(bool mayHaveColours) const override;
    std::optional<GeoTransform> transform() const override;
    CoordinateSystem coordinateSystem() const override;
    std::optional<std::string> item(const char* key, const char* domain) const override;
    std::optional<std::string> bandItem(int band, const char* key,
                                        const char* domain) const override;
    std::string bytesOfItem(const char* key, const char* domain) const override;
    int numItems(const char* domain) const override;
    std::vector<std::string> files() const override;
    bool canReadLastPixel() const override;
    int numOverviews(int band) const override;
    bool hasLevel(int band, int level) const override;
    ChannelRange range(int band) const override;
    bool read(int band, int level, SampleFormat format, const PixelRequest& request,
              bool overviews) const override;

  private:
    /// Null when there is no such level.
    GDALRasterBand* level(int band, int number) const;

    DatasetPointer dataset_;
    std::size_t part_;
};

}  // namespace Pyxis
