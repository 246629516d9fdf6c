#include "host/codecs/Readability.h"

#include <string_view>

#include "host/Text.h"
#include "host/cache/FileCache.h"
#include "host/file/PathName.h"
#include "host/file/WorldFile.h"

namespace Pyxis {
namespace {

/// Side files from which GDAL and other programs read georeferences.
struct SideFile {
    std::string_view ending;
    bool replacesExtension;  ///< else it follows the whole name
    std::string_view mark;   ///< text in the file if it has a georeference
};
constexpr SideFile kSideFiles[] = {
    {".aux.xml", false, "<GeoTransform>"},
    {".aux.xml", false, "<GCPList"},
    {".tab", true, "Type \"RASTER\""},
    {".TAB", true, "Type \"RASTER\""},
    {".RPB", true, ""},
    {"_rpc.txt", true, ""},
    {"_RPC.TXT", true, ""},
    {".points", false, ""},
};

}  // namespace

std::string whyNotReadable(const FileSpecifier& file) {
    if (file.type() != FileSpecifier::Type::PlainFile) {
        return "not a plain file";
    }
    const Expected<RasterPointer> opened = FileCache().open(toUtf8(file.string()));
    return opened ? std::string() : opened.refusal().reason;
}

std::string unreadGeoreference(const FileSpecifier& file) {
    const std::string path = toUtf8(file.string());
    const std::size_t folder = folderOf(path).size();
    const std::size_t dot = path.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot > folder;
    for (const std::string& world : worldFilesOf(path)) {
        if (readHead(world)) {
            return world.substr(folder);  // not of this format's, or it gives no place
        }
    }
    for (const SideFile& side : kSideFiles) {
        const std::string stem =
            side.replacesExtension && hasExtension ? path.substr(0, dot) : path;
        const std::string beside = stem + std::string(side.ending);
        const Expected<FileHead> head = readHead(beside);
        if (head && head->bytes.find(side.mark) != std::string::npos) {
            return beside.substr(folder);
        }
    }
    return {};
}

}  // namespace Pyxis
