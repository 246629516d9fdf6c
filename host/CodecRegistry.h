#pragma once

#include <list>

#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

/// The host's codecs, in the order of registration. One thread registers them at start-up; any
/// number of threads may use the registry afterwards.
class PYXIS_API CodecRegistry {
  public:
    /// The one registry of the process.
    static CodecRegistry& instance();

    /// Adds a codec at the end. It is not owned; its owner removes it before destroying it.
    void add(const ImageFormatCodec& codec);
    /// Removes a codec; does nothing when it is not registered.
    void remove(const ImageFormatCodec& codec);

    /// Asks the codecs in turn. Decodable, with `codec` set to the first that reads `file`; else
    /// UndecodableSet if a codec returned that, or NotThisFormat, with `codec` unchanged. A codec
    /// that throws does not read the file; std::bad_alloc propagates.
    FormatDecodability find(const FileSpecifier& file, const ImageFormatCodec*& codec) const;

  private:
    /// A list, as opening a file may load a module that registers codecs while they are asked.
    std::list<const ImageFormatCodec*> codecs_;
};

/// Registers a codec for the lifetime of this object.
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
