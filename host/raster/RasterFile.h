#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "host/raster/DatasetHandle.h"
#include "host/raster/GeoFacts.h"
#include "host/raster/RasterFacts.h"

namespace Pyxis {

/// A raster file that codecs, images and frames share, on several threads: its facts, the handle on
/// its pixels, and its georeferences.
class RasterFile {
  public:
    RasterFile(RasterFacts facts, std::unique_ptr<DatasetHandle> handle);

    const RasterFacts& facts() const { return facts_; }
    int numFrames() const { return static_cast<int>(facts_.frames.size()); }
    const FrameFacts& frame(int index) const {
        return facts_.frames.at(static_cast<std::size_t>(index));
    }
    DatasetHandle& handle() const { return *handle_; }
    /// The datasets for this thread. Threads that read at the same time each get their own handle,
    /// at most one a processor; further threads wait.
    DatasetHandle::Use use();
    /// The georeference of the frame, computed at the first request; null when there is none or the
    /// file is gone.
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
