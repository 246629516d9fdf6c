#include "host/CodecRegistry.h"

#include <algorithm>

namespace Pyxis {

CodecRegistry& CodecRegistry::instance() {
    static CodecRegistry registry;
    return registry;
}

void CodecRegistry::add(const ImageFormatCodec& codec) {
    codecs_.push_back(&codec);
}

void CodecRegistry::remove(const ImageFormatCodec& codec) {
    codecs_.erase(std::remove(codecs_.begin(), codecs_.end(), &codec), codecs_.end());
}

FormatDecodability CodecRegistry::find(const FileSpecifier& file,
                                       const ImageFormatCodec*& codec) const {
    FormatDecodability answer = FormatDecodability::NotThisFormat;
    for (const ImageFormatCodec* candidate : codecs_) {
        const FormatDecodability said = candidate->isDecodableFile(file, nullptr);
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
