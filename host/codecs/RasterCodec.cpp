#include "host/codecs/RasterCodec.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/FastSiblings.h"

namespace Pyxis {

Expected<RasterPointer> openSpecifier(FileCache& cache, const Format& format,
                                      const FileSpecifier& file) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        return Refusal{Refusal::Kind::Unreadable, "not a plain file"};
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

bool hasExtensionOf(const Format& format, const FileSpecifier& file) {
    const std::string path = toUtf8(file.string());
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) {
        return false;
    }
    return std::any_of(format.extensions.begin(), format.extensions.end(),
                       [extension = name.substr(dot + 1)](const char* one) {
                           return equalIgnoringCase(extension, one);
                       });
}

void setText(StringBuffer& text, const char* value) noexcept {
    attempt([&] { text = toWideBuffer(value); });
}

}  // namespace Pyxis
