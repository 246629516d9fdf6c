#include "host/CodecRegistry.h"

#include <new>

namespace Pyxis {
namespace {

/// A codec that throws does not read the file, except that std::bad_alloc propagates.
FormatDecodability answerOf(const ImageFormatCodec& codec, const FileSpecifier& file) {
    try {
        return codec.isDecodableFile(file, nullptr);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return FormatDecodability::NotThisFormat;
    }
}

}  // namespace

CodecRegistry& CodecRegistry::instance() {
    static CodecRegistry registry;
    return registry;
}

void CodecRegistry::add(const ImageFormatCodec& codec) {
    codecs_.push_back(&codec);
}

void CodecRegistry::remove(const ImageFormatCodec& codec) {
    codecs_.remove(&codec);
}

FormatDecodability CodecRegistry::find(const FileSpecifier& file,
                                       const ImageFormatCodec*& codec) const {
    FormatDecodability answer = FormatDecodability::NotThisFormat;
    for (const ImageFormatCodec* candidate : codecs_) {
        const FormatDecodability said = answerOf(*candidate, file);
        if (said == FormatDecodability::Decodable) {
            codec = candidate;
            return said;
        }
        if (said == FormatDecodability::UndecodableSet) {
            answer = said;
        }
    }
    return answer;
}

CodecRegistration::CodecRegistration(const ImageFormatCodec& codec) : codec_(codec) {
    CodecRegistry::instance().add(codec_);
}

CodecRegistration::~CodecRegistration() {
    CodecRegistry::instance().remove(codec_);
}

}  // namespace Pyxis
