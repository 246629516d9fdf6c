#include "tool/raster/Picture.h"

#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <limits>
#include <memory>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/OutputFormat.h"

namespace kestms {

Picture::Picture(int width, int height)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

Picture::Pixel& Picture::at(int column, int row) {
    return pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(column)];
}

namespace {

constexpr int kSamples = 4;

bool isOpaque(const std::vector<Picture::Pixel>& pixels) {
    return std::all_of(pixels.begin(), pixels.end(),
                       [](const Picture::Pixel& pixel) { return pixel[3] != 0; });
}

/// Without transparency, on white.
std::vector<Picture::Pixel> onWhite(std::vector<Picture::Pixel> pixels) {
    for (Picture::Pixel& pixel : pixels) {
        if (pixel[3] == 0) {
            pixel.fill(std::numeric_limits<std::uint8_t>::max());
        }
    }
    return pixels;
}

}  // namespace

void Picture::write(const std::string& path, const OutputRules& rules) const {
    const OutputFormat format = pictureFormat(path);
    std::vector<std::unique_ptr<OutputFile>> files;
    files.push_back(std::make_unique<OutputFile>(path, rules));
    const OutputFile& output = *files.front();
    GDALAllRegister();
    const Pyxis::ErrorCapture errors;
    GDALDriver* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(driverOf(format));
    if (memory == nullptr || driver == nullptr) {
        output.fail(std::string("this GDAL writes no ") + driverOf(format) + " files");
    }
    const bool opaque = format == OutputFormat::Jpeg || isOpaque(pixels_);
    const int bands = opaque ? kSamples - 1 : kSamples;
    std::vector<Pixel> pixels = opaque ? onWhite(pixels_) : pixels_;
    const GDALDatasetUniquePtr raster(
        memory->Create("", width_, height_, bands, GDT_Byte, nullptr));
    if (!raster || raster->RasterIO(GF_Write, 0, 0, width_, height_, pixels.data(), width_, height_,
                                    GDT_Byte, bands, nullptr, kSamples, GSpacing{kSamples} * width_,
                                    1, nullptr) != CE_None) {
        output.fail(errors.message());
    }
    CPLStringList options;
    if (format == OutputFormat::Jpeg) {
        options.SetNameValue("QUALITY", "90");
    } else if (format == OutputFormat::Png) {
        options.SetNameValue("ZLEVEL", "3");  // more effort takes long and gains little
    }
    const GdalSession session;
    GDALDatasetUniquePtr written(driver->CreateCopy(output.temporaryPath().c_str(), raster.get(),
                                                    FALSE, options.List(), nullptr, nullptr));
    const bool complete = written != nullptr;
    written.reset();
    if (!complete || !errors.message().empty()) {
        output.fail(errors.message());
    }
    commitTogether(files);
}

}  // namespace kestms
