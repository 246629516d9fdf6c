#include "host/gdal/RasterFile.h"

#include <utility>

namespace Pyxis {

RasterFile::RasterFile(RasterFacts facts, std::unique_ptr<DatasetHandle> handle)
    : facts_(std::move(facts)), handle_(std::move(handle)) {}

std::shared_ptr<const GeoFacts> RasterFile::place(int index) {
    const FrameFacts& facts = frame(index);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (places_.size() <= facts.part) {
        places_.resize(facts.part + 1);
    }
    auto& place = places_[facts.part];
    if (place) {
        return *place;
    }
    const ErrorCapture silent;
    std::optional<DatasetHandle::Use> use;
    bool isGone = false;
    std::shared_ptr<const GeoFacts> read =
        readGeoFacts(facts_.place, facts.width, facts.height, [&]() -> GDALDataset* {
            GDALDataset* dataset = (use ? *use : use.emplace(*handle_)).dataset(facts.part);
            isGone = dataset == nullptr;
            return dataset;
        });
    if (!isGone) {  // a file that could not be opened may be another time
        place = read;
    }
    return read;
}

}  // namespace Pyxis
