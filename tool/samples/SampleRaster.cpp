#include "tool/samples/SampleRaster.h"

#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/gdal/ErrorCapture.h"
#include "tool/terminal/Interrupt.h"

namespace kestms::samples {
namespace {

constexpr int kUtm32North = 32632;

struct Scale {
    double perCent;  ///< sample units for one per cent of reflectance
    double offset;   ///< haze and dark current
    double largest;
};

Scale scaleOf(Samples samples) {
    return samples == Samples::EightBits ? Scale{3.0, 8.0, 255.0} : Scale{20.0, 60.0, 2047.0};
}

std::vector<std::uint16_t> samplesOf(const SampleRaster& raster, Spectrum spectrum) {
    const Scale scale = scaleOf(raster.samples);
    std::vector<std::uint16_t> samples;
    samples.reserve(static_cast<std::size_t>(raster.pixels) *
                    static_cast<std::size_t>(raster.pixels));
    for (int row = 0; row < raster.pixels; ++row) {
        throwIfInterrupted();
        for (int column = 0; column < raster.pixels; ++column) {
            const double value =
                reflectance((column + 0.5) / raster.pixels, (row + 0.5) / raster.pixels, spectrum);
            samples.push_back(static_cast<std::uint16_t>(
                std::lround(std::min(scale.offset + value * scale.perCent, scale.largest))));
        }
    }
    return samples;
}

void describe(GDALDataset& dataset, const SampleRaster& raster) {
    const double pixel = raster.extent / raster.pixels;
    double transform[6] = {kOrigin.x, pixel, 0.0, kOrigin.y, 0.0, -pixel};
    OGRSpatialReference system;
    system.importFromEPSG(kUtm32North);
    dataset.SetSpatialRef(&system);
    dataset.SetGeoTransform(transform);
    if (!raster.description.empty()) {
        dataset.SetMetadataItem("TIFFTAG_IMAGEDESCRIPTION", raster.description.c_str());
    }
}

}  // namespace

std::string rawSamples(const SampleRaster& raster) {
    std::string bytes;
    for (const std::uint16_t sample : samplesOf(raster, raster.bands.front())) {
        bytes.push_back(static_cast<char>(sample));
    }
    return bytes;
}

void writeRaster(const OutputFile& output, const SampleRaster& raster) {
    GDALAllRegister();
    const Pyxis::ErrorCapture errors;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(raster.driver.c_str());
    if (driver == nullptr) {
        output.fail("this GDAL writes no " + raster.driver + " files");
    }
    CPLStringList options;
    for (const std::string& option : raster.options) {
        options.AddString(option.c_str());
    }
    const GDALDataType type = raster.samples == Samples::EightBits ? GDT_Byte : GDT_UInt16;
    GDALDatasetUniquePtr dataset(
        driver->Create(output.temporaryPath().c_str(), raster.pixels, raster.pixels,
                       static_cast<int>(raster.bands.size()), type, options.List()));
    if (!dataset) {
        output.fail(errors.message());
    }
    describe(*dataset, raster);
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        std::vector<std::uint16_t> samples = samplesOf(raster, raster.bands[i]);
        GDALRasterBand* band = dataset->GetRasterBand(static_cast<int>(i) + 1);
        if (band->RasterIO(GF_Write, 0, 0, raster.pixels, raster.pixels, samples.data(),
                           raster.pixels, raster.pixels, GDT_UInt16, 0, 0, nullptr) != CE_None) {
            output.fail(errors.message());
        }
    }
    dataset.reset();
    if (!errors.message().empty()) {
        output.fail(errors.message());
    }
}

}  // namespace kestms::samples
