#pragma once

#include <gdal.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "tool/raster/OutputLayout.h"

namespace kestms {

/// Reads a band, through its frame, as it lies in an output raster.
class PlacedPixels {
  public:
    /// The samples come as `type`. Where the band does not reach they are its no-data value, or 0.
    PlacedPixels(const OpenedSet& set, const PlacedBand& placed, GDALDataType type);

    /// Fills `samples` with a window of the output raster, packed line by line. A band of another
    /// pixel size gives its nearest pixels. Throws a Failure with ExitCode::CannotRead.
    void read(const PixelWindow& window, std::vector<std::byte>& samples) const;

  private:
    void readSource(const PixelWindow& source, std::vector<std::byte>& samples) const;

    const PlacedBand& placed_;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame_;
    GDALDataType type_;
    bool ownType_;
    std::size_t sampleBytes_;
    double fill_;
};

}  // namespace kestms
