#pragma once

#include <memory>

#include "properties/FramePropertySet.h"
#include "properties/KestMultispectralPropertySetIterator.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/ReadImageFile.h"

class KestMultispectralReadFile;

/// One band of an opened set. It keeps the component file open and forwards every request to the
/// component's frame; if that throws, the result is that of an empty frame. Everything it publishes
/// about its band is copied at construction, so a host may delete frame and set in any order.
class KestMultispectralReadFileFrame : public Pyxis::ReadImageFileFrameInterface {
  public:
    /// Opens frame `frameNumber` of `component` through `codec`. Neither `codec` nor `reader`, the
    /// set, is owned. Throws the int 1 when there is no such frame.
    KestMultispectralReadFileFrame(
        const Pyxis::FileSpecifier& component, int frameNumber,
        const Pyxis::ImageFormatCodec* codec, const KestMultispectralReadFile* reader,
        int frameIndex, std::shared_ptr<KestMultispectralPropertySetIterator> propertySet);
    KestMultispectralReadFileFrame(const KestMultispectralReadFileFrame&) = delete;
    KestMultispectralReadFileFrame& operator=(const KestMultispectralReadFileFrame&) = delete;
    ~KestMultispectralReadFileFrame() override;

    bool frameOp1(int level) override;
    /// The band's index in the set.
    int getFrameIndex() const override;
    void frameOp3(std::int32_t* width, std::int32_t* height) override;
    std::int32_t frameOp4() override;
    std::int32_t frameOp5() override;
    std::int32_t frameOp6() override;
    std::int32_t frameOp7() override;
    std::int32_t frameOp8() override;
    std::int32_t frameOp9() override;
    std::int32_t frameOp10() override;
    void frameOp11(int channel, Pyxis::ChannelRange* range) override;
    const Pyxis::ColourTable* frameOp12() override;
    bool frameOp13(int level, Pyxis::PixelRequest* request) override;
    /// The component frame's properties, the set's, and the band's own. Null when memory fails.
    Pyxis::FormatCodecPropertySetIterator* getProperties() override;
    void* frameOp15(void* argument) override;
    void* frameOp16(int argument) override;

  private:
    std::shared_ptr<KestMultispectralPropertySetIterator> propertySet_;
    int frameIndex_;
    kest::BandFacts facts_;
    // In this order, so that the frame is destroyed before its file.
    std::unique_ptr<Pyxis::ReadImageFileInterface> componentFile_;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> componentFrame_;  ///< never null
};
