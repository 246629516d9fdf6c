#include <cstring>

#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

struct BufferType {
    SampleFormat format;
    std::int32_t bits;
};
constexpr BufferType kBufferTypes[] = {
    {SampleFormat::UnsignedInteger, 8},  {SampleFormat::UnsignedInteger, 16},
    {SampleFormat::UnsignedInteger, 32}, {SampleFormat::UnsignedInteger, 64},
    {SampleFormat::SignedInteger, 8},    {SampleFormat::SignedInteger, 16},
    {SampleFormat::SignedInteger, 32},   {SampleFormat::SignedInteger, 64},
    {SampleFormat::FloatingPoint, 32},   {SampleFormat::FloatingPoint, 64},
};

/// A sample of a buffer as a number.
double numberIn(const unsigned char* bytes, const BufferType& type) {
    if (type.format == SampleFormat::FloatingPoint) {
        float single = 0;
        double twice = 0;
        std::memcpy(&single, bytes, sizeof single);
        std::memcpy(&twice, bytes, type.bits == 64 ? sizeof twice : 0);
        return type.bits == 64 ? twice : static_cast<double>(single);
    }
    std::uint64_t number = 0;
    std::memcpy(&number, bytes, static_cast<std::size_t>(type.bits / 8));
    const int unused = 64 - type.bits;
    return type.format == SampleFormat::UnsignedInteger
               ? static_cast<double>(number)
               : static_cast<double>(static_cast<std::int64_t>(number << unused) >> unused);
}

/// A sample converted for a buffer that cannot hold every number.
double clamped(double sample, const BufferType& type) {
    if (type.format == SampleFormat::FloatingPoint || type.bits > 8) {
        return type.format == SampleFormat::UnsignedInteger ? std::max(sample, 0.0) : sample;
    }
    return type.format == SampleFormat::SignedInteger ? std::clamp(sample, -128.0, 127.0)
                                                      : std::clamp(sample, 0.0, 255.0);
}

class PixelWindow : public OnFiles {};

TEST_F(PixelWindow, EverySampleTypeIsReadIntoEveryBufferType) {
    const fakes::Raster cases[] = {
        {.type = GDT_Byte, .options = {"PIXELTYPE=SIGNEDBYTE"}},
        {.type = GDT_Byte},
        {.type = GDT_UInt16},
        {.type = GDT_Int16},
        {.type = GDT_UInt32},
        {.type = GDT_Int32},
        {.type = GDT_Float32},
        {.type = GDT_Float64},
    };
    constexpr std::array<int, 3> kSamples = {-120, -3, 100};
    for (const fakes::Raster& raster : cases) {
        const bool isSignedByte = !raster.options.empty();
        const bool hasSign =
            isSignedByte ||
            (raster.type != GDT_Byte && raster.type != GDT_UInt16 && raster.type != GDT_UInt32);
        const std::string path = fakes::writeRaster(directory / "raster.tif", raster);
        std::array<double, 3> expected{};
        {
            const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_UPDATE));
            for (std::size_t i = 0; i < kSamples.size(); ++i) {
                expected.at(i) = hasSign ? kSamples.at(i) : kSamples.at(i) + 130;
                auto sample = static_cast<double>(expected.at(i));
                auto byte = static_cast<signed char>(isSignedByte ? sample : 0);
                ASSERT_EQ(dataset->GetRasterBand(1)->RasterIO(
                              GF_Write, static_cast<int>(i), 1, 1, 1,
                              isSignedByte ? static_cast<void*>(&byte) : &sample, 1, 1,
                              isSignedByte ? GDT_Byte : GDT_Float64, 0, 0, nullptr),
                          CE_None);
            }
        }
        const Opened opened(path);
        for (const BufferType& type : kBufferTypes) {
            SCOPED_TRACE(std::string(GDALGetDataTypeName(raster.type)) + " to " +
                         std::to_string(static_cast<int>(type.format)) + "/" +
                         std::to_string(type.bits));
            std::array<unsigned char, 64> bytes{};
            PixelRequest request{0, 1, 3, 1, 3, 1};
            request.buffer = bytes.data();
            request.bufferBytes = bytes.size();
            request.sampleFormat = type.format;
            request.sampleBits = type.bits;
            request.pixelStride = 16;
            ASSERT_TRUE(opened.frame->frameOp13(0, &request));
            for (std::size_t i = 0; i < kSamples.size(); ++i) {
                EXPECT_EQ(numberIn(&bytes.at(i * 16), type), clamped(expected.at(i), type));
            }
        }
    }
}

}  // namespace
