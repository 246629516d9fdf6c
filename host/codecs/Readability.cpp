#include "host/codecs/Readability.h"

#include <array>

#include "host/Text.h"
#include "host/codecs/GdalCodec.h"

namespace Pyxis {

std::string whyNotReadable(const FileSpecifier& file) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        return "not a plain file";
    }
    std::string why;
    const std::optional<std::string> head =
        readHead(toUtf8(file.string()), GdalFormat::kHeadBytes, why);
    if (!head) {
        return why;
    }
    if (head->empty()) {
        return "the file is empty";
    }
    for (const GdalFormat* format : {&tiffFormat()}) {
        if (format->matches(*head)) {
            openSpecifier(*format, file, why);
            return why;
        }
    }
    return "no known raster format";
}

}  // namespace Pyxis
