#include "host/file/AuxiliaryFile.h"

#include <cstddef>
#include <utility>

#include "host/file/FileHead.h"
#include "host/file/PathPolicy.h"

namespace Pyxis {

std::string auxiliaryFileOf(const std::string& path) {
    return path + ".aux.xml";
}

std::string readAuxiliaryFile(const std::string& path) {
    constexpr std::size_t kMostBytes = 16U << 20U;  // histograms make them long
    if (kindOf(path) == PathKind::Remote) {
        return {};
    }
    Expected<FileHead> head = readHead(auxiliaryFileOf(path), kMostBytes);
    const bool mayPlace = head && head->bytes.size() == head->state.size &&
                          (head->bytes.find("GeoTransform") != std::string::npos ||
                           head->bytes.find("SRS") != std::string::npos);
    return mayPlace ? std::move(head->bytes) : std::string();
}

}  // namespace Pyxis
