#include "tool/raster/CloudOptimized.h"

#include <gdal_priv.h>

#include <exception>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/CreationOptions.h"

namespace kestms {
namespace {

/// Takes a function that throws through GDAL, which knows no exceptions.
struct Relay {
    const ProgressFunction& progress;
    std::exception_ptr thrown;

    static int CPL_STDCALL call(double part, const char* /*message*/, void* self) {
        auto& relay = *static_cast<Relay*>(self);
        try {
            relay.progress(part);
        } catch (...) {
            relay.thrown = std::current_exception();
        }
        return relay.thrown ? FALSE : TRUE;
    }
};

}  // namespace

void writeCloudOptimized(const std::string& from, const GeoTiffOptions& settings,
                         const OutputFile& output, const ProgressFunction& progress) {
    const Pyxis::ErrorCapture errors;
    Relay relay{progress, nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("COG");
    const GDALDatasetUniquePtr source(GDALDataset::Open(from.c_str(), GDAL_OF_RASTER));
    if (driver == nullptr || !source) {
        output.fail(driver == nullptr ? "this GDAL writes no Cloud Optimized GeoTIFF"
                                      : errors.message());
    }
    const CPLStringList options =
        cloudCreationOptions(settings, source->GetRasterBand(1)->GetRasterDataType());
    GDALDatasetUniquePtr copy(driver->CreateCopy(output.temporaryPath().c_str(), source.get(),
                                                 FALSE, options.List(), Relay::call, &relay));
    const bool complete = copy != nullptr;
    copy.reset();
    if (relay.thrown) {
        std::rethrow_exception(relay.thrown);
    }
    if (!complete || !errors.message().empty()) {
        output.fail(errors.message());
    }
}

}  // namespace kestms
