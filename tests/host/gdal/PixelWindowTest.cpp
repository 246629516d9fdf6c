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
    constexpr int kLine = 5;  // of samples below and above zero, and some that need an eighth bit
    for (const fakes::Raster& raster : cases) {
        const Opened opened(fakes::writeRaster(directory / "raster.tif", raster));
        const auto expectedAt = [&raster](int x) {
            const bool isUnsigned = raster.type == GDT_Byte || raster.type == GDT_UInt16;
            const double sample = fakes::sampleAt(1, x, kLine, !isUnsigned);
            return !raster.options.empty()     ? static_cast<signed char>(static_cast<int>(sample))
                   : raster.type == GDT_UInt32 ? std::max(sample, 0.0)
                                               : sample;
        };
        for (const BufferType& type : kBufferTypes) {
            SCOPED_TRACE(std::string(GDALGetDataTypeName(raster.type)) + " to " +
                         std::to_string(static_cast<int>(type.format)) + "/" +
                         std::to_string(type.bits));
            std::array<unsigned char, 12 * 16> bytes{};
            PixelRequest request{0, kLine, 12, 1, 12, 1, type.format, type.bits, 16};
            request.buffer = bytes.data();
            request.bufferBytes = bytes.size();
            ASSERT_TRUE(opened.frame->frameOp13(0, &request));
            for (int x = 0; x < 12; ++x) {
                EXPECT_EQ(numberIn(&bytes.at(static_cast<std::size_t>(x) * 16), type),
                          clamped(expectedAt(x), type));
            }
        }
    }
}

}  // namespace
