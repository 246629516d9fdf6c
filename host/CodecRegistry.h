#pragma once

#include <vector>

#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

/// The codecs that the host asks, in the order of registration. Registering is for one thread at
/// start-up; asking may then go on from several.
class PYXIS_API CodecRegistry {
  public:
    /// The one registry of the process.
    static CodecRegistry& instance();

    /// Adds a codec at the end. It is not owned: its owner removes it before it goes.
    void add(const ImageFormatCodec& codec);
    /// Forgets a codec; does nothing when it is not registered.
    void remove(const ImageFormatCodec& codec);

    /// Asks the codecs in turn. Decodable with `codec` set at the first that reads `file`; else
    /// UndecodableSet when one said so, or NotThisFormat, with `codec` untouched. A codec that
    /// throws counts as one that does not read the file; std::bad_alloc is passed on.
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
