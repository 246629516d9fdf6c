#pragma once

#include "host/formats/Format.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// An opened file as an image. Its codec closes it on destruction; a closed image has no frames.
class RasterImage final : public ReadImageFileInterface {
  public:
    RasterImage(const ImageFormatCodec& codec, const Format& format, const FileSpecifier& file,
                RasterPointer opened);
    RasterImage(const RasterImage&) = delete;
    RasterImage& operator=(const RasterImage&) = delete;
    ~RasterImage() override;

    /// Null after the codec was destroyed.
    const ImageFormatCodec* getCodec() const override;
    const FileSpecifier& getFileSpecifier() const override;
    int getNumFiles() const override;
    FileSpecifier getFile(int index) const override;
    int getNumFrames() const override;
    ReadImageFileFrameInterface* openFrame(int frameIndex) override;

    /// Closes the images of `codec` that nobody has deleted. They may still be deleted later.
    static void closeAllOf(const ImageFormatCodec& codec);

  private:
    RasterPointer opened() const;

    const ImageFormatCodec* codec_;
    const Format& format_;
    FileSpecifier specifier_;
    RasterPointer opened_;
};

}  // namespace Pyxis
