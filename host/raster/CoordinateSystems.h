#pragma once

#include <functional>
#include <future>
#include <memory>

#include "host/raster/Dataset.h"
#include "host/raster/RasterFacts.h"

namespace Pyxis {

/// Its value is never null. Another thread may still be computing it.
using SharedSystem = std::shared_future<std::shared_ptr<const CoordinateSystem>>;

/// Opens the dataset of a raster if the known facts are not enough; null when its file is gone.
using DatasetOpener = std::function<const Dataset*()>;

/// The coordinate system of a raster; not valid when its file is gone. It is computed once for all
/// rasters with the same key.
SharedSystem coordinateSystemOf(const PlaceFacts& place, const DatasetOpener& open);

}  // namespace Pyxis
