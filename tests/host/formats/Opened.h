#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "host/Text.h"
#include "host/codecs/StandardCodecs.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FileReadDescriptor.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "tests/fakes/Rasters.h"

/// A test on files in a directory of its own, with the host's codecs.
class OnFiles : public testing::Test {
  protected:
    fakes::TempDirectory directory;
    Pyxis::StandardCodecs codecs;
};

/// The codec that the registry finds for a path; null when none reads it.
inline const Pyxis::ImageFormatCodec* codecOf(const std::string& path) {
    const Pyxis::ImageFormatCodec* codec = nullptr;
    Pyxis::FileReadDescriptor::findImageFileCodec(Pyxis::fileSpecifier(path), codec);
    return codec;
}

/// A file opened as the host's users open it; members are destroyed in the right order.
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

    /// The pixels in the frame's own sample type, every n-th of them; empty when they cannot be
    /// read.
    std::vector<unsigned char> pixels(int every = 1) const {
        Pyxis::PixelRequest request;
        frame->frameOp3(&request.width, &request.height);
        request.bufferWidth = request.width / every;
        request.bufferHeight = request.height / every;
        std::vector<unsigned char> bytes(static_cast<std::size_t>(request.bufferWidth) *
                                         static_cast<std::size_t>(request.bufferHeight) *
                                         static_cast<std::size_t>(frame->frameOp6() / 8));
        request.buffer = bytes.data();
        request.bufferBytes = bytes.size();
        return frame->frameOp13(0, &request) ? bytes : std::vector<unsigned char>();
    }

    /// Lower left corner in whole units, code and start of the text of the coordinate system.
    std::string place() const {
        const auto* geo = property<Pyxis::FormatCodecGeoCorrelation>();
        if (geo == nullptr) {
            return "none";
        }
        Pyxis::Point3d origin;
        int code = -1;
        Pyxis::StringBuffer text;
        geo->getOrigin(origin);
        geo->getCoordinateSystemCode(code);
        geo->getCoordinateSystem(text);
        EXPECT_EQ(geo->hasCoordinateSystemCode(), code > 0);
        return CPLSPrintf("%.0f %.0f, %d %s", origin.x, origin.y, code,
                          Pyxis::toUtf8(text).substr(0, 8).c_str());
    }

    const Pyxis::ImageFormatCodec* codec;
    std::unique_ptr<Pyxis::ReadImageFileInterface> image;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties;
};

/// The property that a kind of codec names by number.
template <typename Codec>
std::string numberedProperty(int number, const std::string& path, int frame = 0) {
    const auto* codec = dynamic_cast<const Codec*>(codecOf(path));
    if (codec == nullptr) {
        return "another codec";
    }
    Pyxis::StringBuffer name = Pyxis::toWideBuffer("before"), value;
    codec->getPropertyName(number + 1, name);
    EXPECT_TRUE(name.isZero());
    codec->getPropertyName(number, name);
    Pyxis::FileReadDescriptor file(Pyxis::fileSpecifier(path), codec);
    EXPECT_TRUE(file.setFrame(frame));
    const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> found(file.getProperty(name));
    const auto* text = dynamic_cast<const Pyxis::FormatCodecStringProperty*>(found.get());
    if (text == nullptr) {
        return "none";
    }
    text->getValue(value);
    EXPECT_EQ(value.type(), Pyxis::CharacterType::Narrow);
    return Pyxis::toUtf8(value);
}

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

/// The paths below a directory that this process has open, once for each descriptor.
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
