#pragma once

#include <memory>

#include "pyxis/Export.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FormatCodecProperty.h"
#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

/// The host's codec registry and file opener as codecs see it.
class PYXIS_API FileReadDescriptor {
  public:
    /// Asks the registered codecs in order whether they read `file`. Decodable with `codec` set
    /// when one does; else another value, with `codec` unchanged.
    static FormatDecodability findImageFileCodec(const FileSpecifier& file,
                                                 const ImageFormatCodec*& codec);

    /// For reading `file` through `codec`, which is not owned. Frame 0 is selected.
    FileReadDescriptor(const FileSpecifier& file, const ImageFormatCodec* codec);
    FileReadDescriptor(const FileReadDescriptor&) = delete;
    FileReadDescriptor& operator=(const FileReadDescriptor&) = delete;
    ~FileReadDescriptor();

    /// Selects a frame; false, with the selection unchanged, when there is no such frame.
    bool setFrame(int frame);
    /// A new copy of the selected frame's property of that name, owned by the caller, or null.
    FormatCodecPropertyInterface* getProperty(StringBuffer name);

  private:
    ReadImageFileInterface* image();

    FileSpecifier file_;
    const ImageFormatCodec* codec_;
    std::unique_ptr<ReadImageFileInterface> image_;
    int frame_ = 0;
};

}  // namespace Pyxis
