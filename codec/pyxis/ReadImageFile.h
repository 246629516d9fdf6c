#pragma once

#include <cstddef>
#include <cstdint>

#include "pyxis/Export.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FormatCodecPropertySetIterator.h"

namespace Pyxis {

class ImageFormatCodec;

/// Answers of `frameOp4`.
enum class PixelModel : std::int32_t {
    SingleChannel = 0,
    Palette = 1,
    Rgb = 2,
    RgbAlpha = 3,
    Continuous = 4,  ///< a single channel of floating-point samples
};

/// Answers of `frameOp7`.
enum class SampleFormat : std::int32_t {
    UnsignedInteger = 1,
    SignedInteger = 2,
    Complex = 3,
    FloatingPoint = 4,
};

/// Filled by `frameOp11`.
struct ChannelRange {
    double minimum = 0.0;
    double maximum = 0.0;
    double noData = 0.0;
    bool hasNoData = false;
};

/// Answer of `frameOp12`: `numEntries` quadruples red, green, blue, alpha of 8 bits each, owned by
/// the frame.
struct ColourTable {
    std::int32_t numEntries = 0;
    const std::uint8_t* entries = nullptr;
};

/// A window of pixels for `frameOp13`, in pixels of the requested level. It is resampled (nearest
/// neighbour) when the buffer has another size.
struct PixelRequest {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bufferWidth = 0;
    std::int32_t bufferHeight = 0;
    /// Samples in the buffer; those of the frame are converted (and saturate). `sampleBits` 0 keeps
    /// the frame's format and bits.
    SampleFormat sampleFormat = SampleFormat::UnsignedInteger;
    std::int32_t sampleBits = 0;
    /// Bytes from one pixel, line to the next; 0 means packed.
    std::ptrdiff_t pixelStride = 0;
    std::ptrdiff_t lineStride = 0;
    /// Where the samples go; owned by the caller, `bufferBytes` long.
    void* buffer = nullptr;
    std::size_t bufferBytes = 0;
};

/// One frame of an opened image file.
class PYXIS_API ReadImageFileFrameInterface {
  public:
    virtual ~ReadImageFileFrameInterface();  // slot 0
    /// Whether the reduced-resolution level exists; level 0 is full size.
    virtual bool frameOp1(int level) = 0;  // slot 1
    /// The frame's index in its file, 0 for the first.
    virtual int getFrameIndex() const = 0;  // slot 2
    /// Writes the frame's size in pixels.
    virtual void frameOp3(std::int32_t* width, std::int32_t* height) = 0;  // slot 3
    /// Pixel model, a PixelModel.
    virtual std::int32_t frameOp4() = 0;  // slot 4
    /// Channels in a pixel.
    virtual std::int32_t frameOp5() = 0;  // slot 5
    /// Bits in a pixel.
    virtual std::int32_t frameOp6() = 0;  // slot 6
    /// Sample format, a SampleFormat.
    virtual std::int32_t frameOp7() = 0;  // slot 7
    /// Number of reduced-resolution levels.
    virtual std::int32_t frameOp8() = 0;  // slot 8
    /// Width of the frame's natural block in pixels.
    virtual std::int32_t frameOp9() = 0;  // slot 9
    /// Height of the frame's natural block in pixels.
    virtual std::int32_t frameOp10() = 0;  // slot 10
    /// Writes minimum, maximum and no-data value of a channel.
    virtual void frameOp11(int channel, ChannelRange* range) = 0;  // slot 11
    /// The colour table, owned by the frame; null when it has none.
    virtual const ColourTable* frameOp12() = 0;  // slot 12
    /// Reads a window of pixels; false, with the buffer's content undefined, when it cannot.
    virtual bool frameOp13(int level, PixelRequest* request) = 0;  // slot 13
    /// A new property set owned by the caller, or null.
    virtual FormatCodecPropertySetIterator* getProperties() = 0;  // slot 14
    /// Not used by this host: null.
    virtual void* frameOp15(void* argument) = 0;  // slot 15
    /// Not used by this host: null.
    virtual void* frameOp16(int argument) = 0;  // slot 16
};

/// An opened image file.
class PYXIS_API ReadImageFileInterface {
  public:
    virtual ~ReadImageFileInterface();  // slot 0
    /// The codec that opened the file; not owned.
    virtual const ImageFormatCodec* getCodec() const = 0;       // slot 1
    virtual const FileSpecifier& getFileSpecifier() const = 0;  // slot 2
    /// Number of files of the image.
    virtual int getNumFiles() const = 0;  // slot 3
    /// A copy of file `index`; an empty specifier when there is no such file.
    virtual FileSpecifier getFile(int index) const = 0;  // slot 4
    virtual int getNumFrames() const = 0;                // slot 5
    /// A new frame owned by the caller, who deletes it before the image; null when it cannot be
    /// opened.
    virtual ReadImageFileFrameInterface* openFrame(int frameIndex) = 0;  // slot 6
};

}  // namespace Pyxis
