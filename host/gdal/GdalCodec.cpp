#include "host/gdal/GdalCodec.h"

#include <cpl_port.h>

#include <algorithm>

#include "host/gdal/OpenedFile.h"

namespace Pyxis {

std::shared_ptr<OpenedFile> openSpecifier(FileCache& cache, const GdalFormat& format,
                                          const FileSpecifier& file, std::string& why) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        why = "not a plain file";
        return nullptr;
    }
    std::shared_ptr<OpenedFile> opened = cache.open(format, toUtf8(file.string()), why);
    if (!opened) {
        return nullptr;
    }
    why = format.reject(*opened);
    return why.empty() ? opened : nullptr;
}

bool hasExtensionOf(const GdalFormat& format, const FileSpecifier& file) {
    const std::string path = toUtf8(file.string());
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) {
        return false;
    }
    const std::vector<const char*>& known = format.texts().extensions;
    return std::any_of(known.begin(), known.end(),
                       [extension = name.substr(dot + 1)](const char* one) {
                           return EQUAL(extension.c_str(), one);
                       });
}

}  // namespace Pyxis
