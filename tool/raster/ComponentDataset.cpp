#include "tool/raster/ComponentDataset.h"

#include "host/gdal/ErrorCapture.h"
#include "host/gdal/Opening.h"
#include "tool/terminal/Failure.h"

namespace kestms {

ComponentDataset::ComponentDataset(const std::string& path, const Pyxis::RasterSource& source)
    : name_(path, source) {
    const Pyxis::ErrorCapture errors;
    Pyxis::registerDriver(source.driver.c_str());
    const char* const drivers[] = {source.driver.c_str(), nullptr};
    dataset_.reset(
        GDALDataset::Open(name_.text().c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR, drivers));
    if (!dataset_) {
        throw Failure(ExitCode::CannotRead, path,
                      Pyxis::PrivateFiles::withoutNames(errors.message()));
    }
}

}  // namespace kestms
