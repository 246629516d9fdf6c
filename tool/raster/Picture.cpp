#include "tool/raster/Picture.h"

#include <gdal_priv.h>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/NoSidecar.h"

namespace kestms {

Picture::Picture(int width, int height)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

Picture::Pixel& Picture::at(int column, int row) {
    return pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(column)];
}

void Picture::writePng(const std::string& path, const OutputRules& rules) const {
    std::vector<std::unique_ptr<OutputFile>> files;
    files.push_back(std::make_unique<OutputFile>(path, rules));
    const OutputFile& output = *files.front();
    GDALAllRegister();
    const Pyxis::ErrorCapture errors;
    GDALDriver* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    GDALDriver* png = GetGDALDriverManager()->GetDriverByName("PNG");
    if (memory == nullptr || png == nullptr) {
        output.fail("this GDAL writes no PNG files");
    }
    constexpr int kSamples = 4;
    const GSpacing line = GSpacing{kSamples} * width_;
    const GDALDatasetUniquePtr raster(
        memory->Create("", width_, height_, kSamples, GDT_Byte, nullptr));
    auto* samples = const_cast<Pixel*>(pixels_.data());
    if (!raster ||
        raster->RasterIO(GF_Write, 0, 0, width_, height_, samples, width_, height_, GDT_Byte,
                         kSamples, nullptr, kSamples, line, 1, nullptr) != CE_None) {
        output.fail(errors.message());
    }
    const NoSidecar noSidecar;
    GDALDatasetUniquePtr written(png->CreateCopy(output.temporaryPath().c_str(), raster.get(),
                                                 FALSE, nullptr, nullptr, nullptr));
    const bool complete = written != nullptr;
    written.reset();
    if (!complete || !errors.message().empty()) {
        output.fail(errors.message());
    }
    commitTogether(files);
}

}  // namespace kestms
