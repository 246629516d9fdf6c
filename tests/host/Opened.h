#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fakes/Rasters.h"
#include "host/Text.h"
#include "host/codecs/StandardCodecs.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FileReadDescriptor.h"
#include "pyxis/FormatCodecGeoCorrelation.h"

/// The codec that the registry finds for a path; null when none reads it.
inline const Pyxis::ImageFormatCodec* codecOf(const std::string& path) {
    const Pyxis::ImageFormatCodec* codec = nullptr;
    Pyxis::FileReadDescriptor::findImageFileCodec(Pyxis::fileSpecifier(path), codec);
    return codec;
}

/// A file opened as the host's users open it; members go in the right order.
struct Opened {
    explicit Opened(const std::string& path, int frameIndex = 0) : codec(codecOf(path)) {
        const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(path);
        image.reset(codec != nullptr ? codec->openImage(&file) : nullptr);
        frame.reset(image ? image->openFrame(frameIndex) : nullptr);
        properties.reset(frame ? frame->getProperties() : nullptr);
    }

    /// The frame's first property of a class; null when it has none.
    template <typename Property>
    const Property* property() const {
        for (properties->start(); !properties->endOfList(); properties->step()) {
            if (const auto* found = dynamic_cast<Property*>(properties->openProperty())) {
                return found;
            }
        }
        return nullptr;
    }

    /// A window in the frame's own sample type; empty when it cannot be read.
    std::vector<unsigned char> pixels() const {
        Pyxis::PixelRequest request;
        frame->frameOp3(&request.width, &request.height);
        request.bufferWidth = request.width;
        request.bufferHeight = request.height;
        std::vector<unsigned char> bytes(static_cast<std::size_t>(request.width) *
                                         static_cast<std::size_t>(request.height) *
                                         static_cast<std::size_t>(frame->frameOp6() / 8));
        request.buffer = bytes.data();
        request.bufferBytes = bytes.size();
        return frame->frameOp13(0, &request) ? bytes : std::vector<unsigned char>();
    }

    const Pyxis::ImageFormatCodec* codec;
    std::unique_ptr<Pyxis::ReadImageFileInterface> image;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties;
};

/// A band as GDAL reads it itself.
inline std::vector<unsigned char> gdalPixels(const std::string& path, int band) {
    const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str()));
    GDALRasterBand* source = dataset->GetRasterBand(band);
    const GDALDataType type = source->GetRasterDataType();
    std::vector<unsigned char> bytes(static_cast<std::size_t>(source->GetXSize()) *
                                     static_cast<std::size_t>(source->GetYSize()) *
                                     static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type)));
    const CPLErr result =
        source->RasterIO(GF_Read, 0, 0, source->GetXSize(), source->GetYSize(), bytes.data(),
                         source->GetXSize(), source->GetYSize(), type, 0, 0, nullptr);
    return result == CE_None ? bytes : std::vector<unsigned char>();
}

/// The paths below a directory that this process has open, each as often as it is.
inline std::vector<std::string> openBelow(const std::string& directory) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string path = std::filesystem::read_symlink(entry, gone).string();
        if (path.rfind(directory, 0) == 0) {
            paths.push_back(path);
        }
    }
    return paths;
}
