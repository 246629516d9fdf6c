#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "host/gdal/DatasetHandle.h"
#include "host/gdal/GeoFacts.h"
#include "host/gdal/RasterFacts.h"

namespace Pyxis {

/// A raster file as codecs, images and frames share it, on several threads: what is known of it,
/// the handle on its pixels, and where its datasets lie.
class RasterFile {
  public:
    RasterFile(RasterFacts facts, std::unique_ptr<DatasetHandle> handle);

    const RasterFacts& facts() const { return facts_; }
    int numFrames() const { return static_cast<int>(facts_.frames.size()); }
    const FrameFacts& frame(int index) const {
        return facts_.frames.at(static_cast<std::size_t>(index));
    }
    DatasetHandle& handle() const { return *handle_; }
    /// The datasets for this thread. Threads that read at the same time each get a handle of their
    /// own, as many as there are processors; beyond that they wait for each other.
    DatasetHandle::Use use();
    /// Where the frame lies, worked out on the first request; null when it is not georeferenced or
    /// the file is gone.
    std::shared_ptr<const GeoFacts> place(int frame);

  private:
    const RasterFacts facts_;
    const std::unique_ptr<DatasetHandle> handle_;

    std::mutex mutex_;  // taken before that of the handle
    std::vector<std::optional<std::shared_ptr<const GeoFacts>>> places_;  // one a dataset

    std::mutex spareMutex_;  // taken before that of a spare handle
    std::vector<std::unique_ptr<DatasetHandle>> spares_;
};

using RasterPointer = std::shared_ptr<RasterFile>;

}  // namespace Pyxis
