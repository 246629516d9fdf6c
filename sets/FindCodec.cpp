#include "sets/FindCodec.h"

#include <new>

#include "pyxis/FileReadDescriptor.h"

namespace kest {

const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file) {
    const Pyxis::ImageFormatCodec* codec = nullptr;
    try {
        const auto answer = Pyxis::FileReadDescriptor::findImageFileCodec(file, codec);
        return answer == Pyxis::FormatDecodability::Decodable ? codec : nullptr;
    } catch (const std::bad_alloc&) {
        throw;  // Without memory the whole operation fails, not just this component.
    } catch (...) {
        return nullptr;
    }
}

}  // namespace kest
