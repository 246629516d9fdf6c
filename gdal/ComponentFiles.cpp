#include "gdal/ComponentFiles.h"

#include <cpl_string.h>

#include <utility>

#include "host/Text.h"
#include "host/codecs/RasterSource.h"
#include "host/gdal/ErrorCapture.h"
#include "tool/terminal/Failure.h"

namespace kestgdal {
namespace {

/// With one driver and without the names of other files beside it, as the codecs open it: a file's
/// contents must not lead elsewhere.
GDALDatasetUniquePtr openComponent(const Pyxis::RasterSource& source, const std::string& name,
                                   const std::string& path) {
    const char* const drivers[] = {source.driver.c_str(), nullptr};
    CPLStringList siblings;
    siblings.AddString(CPLGetFilename(path.c_str()));
    return GDALDatasetUniquePtr(GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY,
                                                  drivers, nullptr, siblings.List()));
}

}  // namespace

GDALRasterBand* ComponentFiles::band(const kestms::Band& band) {
    if (closed_) {
        return nullptr;
    }
    const Pyxis::ErrorCapture silent;
    const auto source =
        Pyxis::rasterSourceOf(Pyxis::fileSpecifier(band.componentPath), band.componentFrame);
    if (!source) {
        return nullptr;
    }
    const std::string name = source->prefix + band.componentPath;
    auto found = datasets_.find(name);
    if (found == datasets_.end()) {
        found = datasets_.emplace(name, openComponent(*source, name, band.componentPath)).first;
    }
    return found->second ? found->second->GetRasterBand(source->band) : nullptr;
}

kestms::ComponentDescription ComponentFiles::describe(const kestms::Band& band) {
    kestms::ComponentDescription facts;
    const auto source = closed_ ? std::nullopt
                                : Pyxis::rasterSourceOf(Pyxis::fileSpecifier(band.componentPath),
                                                        band.componentFrame);
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
