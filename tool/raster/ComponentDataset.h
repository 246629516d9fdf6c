#pragma once

#include <gdal_priv.h>

#include <string>

#include "tool/raster/SourceName.h"

namespace kestms {

/// A component that GDAL has open: by the one driver that its codec uses, with nothing beside it,
/// since a file's contents must not lead elsewhere.
class ComponentDataset {
  public:
    /// Throws a Failure with ExitCode::CannotRead.
    ComponentDataset(const std::string& path, const Pyxis::RasterSource& source);

    GDALDataset& operator*() const { return *dataset_; }
    GDALDataset* operator->() const { return dataset_.get(); }

  private:
    SourceName name_;
    GDALDatasetUniquePtr dataset_;
};

}  // namespace kestms
