#pragma once

#include <functional>
#include <future>
#include <memory>

#include "host/gdal/RasterFacts.h"
#include "pyxis/StringBuffer.h"

class GDALDataset;

namespace Pyxis {

struct CoordinateSystem {
    StringBuffer text;  ///< wide: WKT2, on one line; empty when the file gives none
    int code = 0;       ///< EPSG code; 0 when there is none
};

/// Its value is never null. Another thread may still be computing it.
using SharedSystem = std::shared_future<std::shared_ptr<const CoordinateSystem>>;

/// Opens the dataset of a raster if the known facts do not suffice; null when its file is gone.
using DatasetOpener = std::function<GDALDataset*()>;

/// The coordinate system of a raster; not valid when its file is gone. It is computed once for all
/// rasters with the same key.
SharedSystem coordinateSystemOf(const PlaceFacts& place, const DatasetOpener& open);

}  // namespace Pyxis
