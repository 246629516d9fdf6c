#pragma once

#include <vector>

#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

/// The codecs that the host asks, in the order of registration. Registering is for one thread at
/// start-up; asking may then go on from several.
class PYXIS_API CodecRegistry {
  public:
    static CodecRegistry& instance();

    /// Adds a codec at the end. It is not owned: its owner removes it before it goes.
    void add(const ImageFormatCodec& codec);
    void remove(const ImageFormatCodec& codec);

    FormatDecodability find(const FileSpecifier& file, const ImageFormatCodec*& codec) const;

  private:
    std::vector<const ImageFormatCodec*> codecs_;
};

/// Keeps a codec registered for as long as it lives.
class PYXIS_API CodecRegistration {
  public:
    explicit CodecRegistration(const ImageFormatCodec& codec);
    CodecRegistration(const CodecRegistration&) = delete;
    CodecRegistration& operator=(const CodecRegistration&) = delete;
    ~CodecRegistration();

  private:
    const ImageFormatCodec& codec_;
};

}  // namespace Pyxis
