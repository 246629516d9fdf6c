#pragma once

#include <memory>
#include <mutex>

#include "host/gdal/OpenedFile.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

/// An opened file as an image. Its codec closes it when it goes; a closed image has no frames.
class GdalImage final : public ReadImageFileInterface {
  public:
    GdalImage(const ImageFormatCodec& codec, const GdalFormat& format, const FileSpecifier& file,
              std::shared_ptr<OpenedFile> opened);
    GdalImage(const GdalImage&) = delete;
    GdalImage& operator=(const GdalImage&) = delete;
    ~GdalImage() override;

    /// Null once the codec is gone.
    const ImageFormatCodec* getCodec() const override;
    const FileSpecifier& getFileSpecifier() const override;
    int getNumFiles() const override;
    FileSpecifier getFile(int index) const override;
    int getNumFrames() const override;
    ReadImageFileFrameInterface* openFrame(int frameIndex) override;

    /// Closes the images of `codec` that nobody has deleted. They may still be deleted later.
    static void closeAllOf(const ImageFormatCodec& codec);

  private:
    std::shared_ptr<OpenedFile> opened() const;

    const ImageFormatCodec* codec_;
    const GdalFormat& format_;
    FileSpecifier specifier_;
    std::shared_ptr<OpenedFile> opened_;
};

}  // namespace Pyxis
