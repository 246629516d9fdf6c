#include "host/formats/Readability.h"

#include <array>

#include "host/Text.h"
#include "host/gdal/GdalCodec.h"

namespace Pyxis {

std::string whyNotReadable(const FileSpecifier& file) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        return "not a plain file";
    }
    std::string why;
    const std::optional<FileHead> head = readHead(toUtf8(file.string()), why);
    if (!head) {
        return why;
    }
    if (head->bytes.empty()) {
        return "the file is empty";
    }
    FileCache unused;
    for (const GdalFormat* format : {&tiffFormat(), &nitfFormat(), &fastFormat()}) {
        if (format->matches(head->bytes)) {
            openSpecifier(unused, *format, file, why);
            return why;
        }
    }
    return "no known raster format";
}

}  // namespace Pyxis
