#include "gdal/ComponentFiles.h"

#include <memory>

#include "host/codecs/RasterSource.h"
#include "host/gdal/ErrorCapture.h"
#include "tool/terminal/Failure.h"

namespace kestgdal {

GDALRasterBand* ComponentFiles::band(const kestms::Band& band) {
    if (closed_) {
        return nullptr;
    }
    const Pyxis::ErrorCapture silent;
    const auto source = Pyxis::rasterSourceOf(band.componentPath, band.componentFrame);
    if (!source) {
        return nullptr;
    }
    const std::string name = source->prefix + band.componentPath;
    auto found = datasets_.find(name);
    if (found == datasets_.end()) {
        found = datasets_.emplace(name, nullptr).first;
        try {
            found->second = std::make_unique<kestms::ComponentDataset>(band.componentPath, *source);
        } catch (const kestms::Failure&) {
            return nullptr;  // The file is gone.
        }
    }
    return found->second ? (*found->second)->GetRasterBand(source->band) : nullptr;
}

kestms::ComponentDescription ComponentFiles::describe(const kestms::Band& band) {
    kestms::ComponentDescription facts;
    const auto source =
        closed_ ? std::nullopt : Pyxis::rasterSourceOf(band.componentPath, band.componentFrame);
    if (source) {
        try {
            facts = reader_.describe(band.componentPath, *source);
        } catch (const kestms::Failure&) {
            facts = {};  // The file is gone; the set's facts remain.
        }
    }
    kestms::addSetFacts(band, facts);
    return facts;
}

void ComponentFiles::close() {
    closed_ = true;
    reader_.close();
    datasets_.clear();
}

}  // namespace kestgdal
