#pragma once

#include <cstdint>

#include "host/formats/Format.h"
#include "host/raster/RasterFile.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// One band of a file as a frame of one channel. It holds the opened file, so that it may outlive
/// its image.
class RasterFrame final : public ReadImageFileFrameInterface {
  public:
    RasterFrame(RasterPointer file, const Format& format, int index);

    bool frameOp1(int level) override;
    int getFrameIndex() const override;
    void frameOp3(std::int32_t* width, std::int32_t* height) override;
    std::int32_t frameOp4() override;
    std::int32_t frameOp5() override;
    std::int32_t frameOp6() override;
    std::int32_t frameOp7() override;
    std::int32_t frameOp8() override;
    std::int32_t frameOp9() override;
    std::int32_t frameOp10() override;
    /// The range that the file states, else that of the sample type; reads no pixels. Writes
    /// nothing for a channel other than 0.
    void frameOp11(int channel, ChannelRange* range) override;
    const ColourTable* frameOp12() override;
    bool frameOp13(int level, PixelRequest* request) override;
    FormatCodecPropertySetIterator* getProperties() override;
    void* frameOp15(void* argument) override;
    void* frameOp16(int argument) override;

  private:
    const FrameFacts& facts() const { return file_->frame(index_); }
    /// What the open dataset answers; `fallback` when the file is gone or has changed.
    template <typename Answer, typename Ask>
    Answer answerOfDataset(Answer fallback, Ask ask) const;
    bool mayHaveLevel(int number) const;

    RasterPointer file_;
    const Format& format_;
    int index_;
    ColourTable colourTable_;
};

}  // namespace Pyxis
