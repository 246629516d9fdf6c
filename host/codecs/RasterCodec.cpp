#include "host/codecs/RasterCodec.h"

#include <string>
#include <string_view>

namespace Pyxis {

Expected<RasterPointer> openSpecifier(FileCache& cache, const Format& format,
                                      const FileSpecifier& file) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        return unreadable("not a plain file");
    }
    Expected<RasterPointer> opened = cache.open(format, toUtf8(file.string()));
    if (opened && format.reject != nullptr) {
        const std::string_view why = format.reject((*opened)->facts());
        if (!why.empty()) {
            return Refusal{Refusal::Kind::OtherFormat, std::string(why)};
        }
    }
    return opened;
}

void setText(StringBuffer& text, const char* value) noexcept {
    attempt([&] { text = toWideBuffer(value); });
}

}  // namespace Pyxis
