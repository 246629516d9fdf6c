#include "tool/raster/GeoTiffWriter.h"

#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <exception>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/BandMetadata.h"
#include "tool/raster/NoSidecar.h"
#include "tool/raster/PlacedPixels.h"

namespace kestms {
namespace {

/// What is read and written at once: whole tiles, and little enough memory for any sample type.
constexpr int kWindowSide = 1024;

/// Of a Cloud Optimized GeoTIFF, what the copy takes after the pixels have been read.
constexpr double kCopyPart = 0.5;

bool sameValue(const std::optional<double>& a, const std::optional<double>& b) {
    const bool bothNan = a && b && std::isnan(*a) && std::isnan(*b);
    return bothNan || a == b;
}

GDALDataType typeForAll(const OutputRaster& raster) {
    const bool signedBytes = hasSignedBytes(*raster.bands.front().band);
    GDALDataType type = GDT_Unknown;
    for (const PlacedBand& placed : raster.bands) {
        if (hasSignedBytes(*placed.band) != signedBytes) {
            throw Failure(ExitCode::NotDecodable, placed.band->componentPath,
                          "its samples and those of other bands do not fit into one file");
        }
        const GDALDataType own = GDALGetDataTypeByName(placed.source.dataType.c_str());
        type = type == GDT_Unknown ? own : GDALDataTypeUnion(type, own);
    }
    return type;
}

/// The differences between neighbours compress better than the samples.
const char* predictorFor(GDALDataType type, const std::string& compression) {
    constexpr int kLargestInteger = 32;
    if (compression == "NONE" || GDALDataTypeIsComplex(type) != FALSE) {
        return "1";
    }
    if (GDALDataTypeIsFloating(type) != FALSE) {
        return "3";
    }
    return GDALGetDataTypeSizeBits(type) <= kLargestInteger ? "2" : "1";
}

CPLStringList creationOptions(GDALDataType type, bool signedBytes, const std::string& compression) {
    CPLStringList options;
    options.SetNameValue("TILED", "YES");
    options.SetNameValue("COMPRESS", compression.c_str());
    options.SetNameValue("PREDICTOR", predictorFor(type, compression));
    options.SetNameValue("INTERLEAVE", "BAND");
    options.SetNameValue("BIGTIFF", "IF_SAFER");
    // Colours are said band by band, not by the file's colour model.
    options.SetNameValue("PHOTOMETRIC", "MINISBLACK");
    options.SetNameValue("ALPHA", "NO");
    if (signedBytes) {
        options.SetNameValue("PIXELTYPE", "SIGNEDBYTE");
    }
    return options;
}

void describe(GDALDataset& dataset, const OutputRaster& raster) {
    auto transform = raster.geoTransform;
    dataset.SetGeoTransform(transform.data());
    if (!raster.coordinateSystem.empty()) {
        dataset.SetProjection(raster.coordinateSystem.c_str());
    }
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        const Band& band = *raster.bands[i].band;
        GDALRasterBand& written = *dataset.GetRasterBand(static_cast<int>(i) + 1);
        written.SetDescription(band.name.c_str());
        written.SetColorInterpretation(colourOf(band));
        for (const MetadataItem& item : spectralMetadata(band)) {
            written.SetMetadataItem(item.key, item.value.c_str(), item.domain);
        }
    }
    const auto& noData = raster.bands.front().band->noData;
    if (noData && shareNoData(raster)) {
        dataset.GetRasterBand(1)->SetNoDataValue(*noData);
    }
}

void copyPixels(const OpenedSet& set, const OutputRaster& raster, GDALDataType type,
                GDALDataset& dataset, const ProgressFunction& progress) {
    std::vector<std::byte> samples;
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        const PlacedPixels pixels(set, raster.bands[i], type);
        GDALRasterBand& band = *dataset.GetRasterBand(static_cast<int>(i) + 1);
        for (int y = 0; y < raster.size.height; y += kWindowSide) {
            for (int x = 0; x < raster.size.width; x += kWindowSide) {
                const PixelWindow window{x, y, std::min(kWindowSide, raster.size.width - x),
                                         std::min(kWindowSide, raster.size.height - y)};
                pixels.read(window, samples);
                if (band.RasterIO(GF_Write, x, y, window.width, window.height, samples.data(),
                                  window.width, window.height, type, 0, 0, nullptr) != CE_None) {
                    return;  // the caller sees the error
                }
                progress((static_cast<double>(i) + static_cast<double>(y) / raster.size.height) /
                         static_cast<double>(raster.bands.size()));
            }
        }
    }
}

void writePlain(const OpenedSet& set, const OutputRaster& raster, const std::string& compression,
                const std::string& path, const OutputFile& output,
                const ProgressFunction& progress) {
    const GDALDataType type = typeForAll(raster);
    const Pyxis::ErrorCapture errors;
    GDALDatasetUniquePtr dataset(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
        path.c_str(), raster.size.width, raster.size.height, static_cast<int>(raster.bands.size()),
        type,
        creationOptions(type, hasSignedBytes(*raster.bands.front().band), compression).List()));
    if (dataset) {
        describe(*dataset, raster);
        copyPixels(set, raster, type, *dataset, progress);
    }
    // A full disk may show only when the last tiles are written.
    dataset.reset();
    if (!errors.message().empty()) {
        output.fail(errors.message());
    }
}

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

void writeCloudOptimized(const std::string& from, const std::string& compression,
                         const OutputFile& output, const ProgressFunction& progress) {
    const Pyxis::ErrorCapture errors;
    CPLStringList options;
    options.SetNameValue("COMPRESS", compression.c_str());
    options.SetNameValue("PREDICTOR", compression == "NONE" ? "NO" : "YES");
    options.SetNameValue("BIGTIFF", "IF_SAFER");
    Relay relay{progress, nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("COG");
    const GDALDatasetUniquePtr source(GDALDataset::Open(from.c_str(), GDAL_OF_RASTER));
    if (driver == nullptr || !source) {
        output.fail(driver == nullptr ? "this GDAL writes no Cloud Optimized GeoTIFF"
                                      : errors.message());
    }
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

}  // namespace

bool shareNoData(const OutputRaster& raster) {
    const auto& first = raster.bands.front().band->noData;
    return std::all_of(raster.bands.begin(), raster.bands.end(), [&first](const PlacedBand& each) {
        return sameValue(each.band->noData, first);
    });
}

void writeGeoTiff(const OpenedSet& set, const OutputRaster& raster, const GeoTiffOptions& options,
                  const OutputFile& output, const ProgressFunction& progress) {
    // The codecs register no more drivers than the inputs need.
    GDALAllRegister();
    const NoSidecar noSidecar;
    if (!options.cloudOptimized) {
        writePlain(set, raster, options.compression, output.temporaryPath(), output, progress);
        return;
    }
    // The copy goes through the levels of the whole image, so that has to be there first.
    const std::string whole = output.temporaryPath() + ".tif";
    writePlain(set, raster, options.compression, whole, output,
               [&](double part) { progress(part * kCopyPart); });
    writeCloudOptimized(whole, options.compression, output,
                        [&](double part) { progress(kCopyPart + part * (1 - kCopyPart)); });
}

}  // namespace kestms
