#include "host/codecs/Places.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/Text.h"
#include "host/file/PathName.h"
#include "host/file/WorldFile.h"
#include "host/formats/Formats.h"
#include "host/raster/Gdal.h"

namespace Pyxis {
namespace {

struct ArchiveName {
    std::string_view ending;
    std::string_view prefix;
};
constexpr std::array<ArchiveName, 4> kArchiveNames = {
    {{".zip", "/vsizip/"}, {".tar", "/vsitar/"}, {".tar.gz", "/vsitar/"}, {".tgz", "/vsitar/"}}};

bool endsIgnoringCase(std::string_view text, std::string_view ending) {
    return text.size() > ending.size() &&
           equalIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

}  // namespace

std::string insideOfArchive(const std::string& path) {
    const auto name = std::find_if(
        kArchiveNames.begin(), kArchiveNames.end(),
        [&path](const ArchiveName& each) { return endsIgnoringCase(path, each.ending); });
    return name != kArchiveNames.end() && kindOf(path) == PathKind::Plain
               ? std::string(name->prefix) + "{" + absolutePath(path) + "}"
               : std::string();
}

Expected<std::vector<std::string>> filesInArchive(const std::string& inside) {
    const std::string_view why = whyNotAllowed(inside);
    if (!why.empty()) {
        return unreadable(std::string(why));
    }
    const Expected<const Gdal*> gdal = Gdal::load();
    return gdal ? (*gdal)->listArchive(inside) : gdal.refusal();
}

std::vector<std::string> namesBeside(const std::string& raster) {
    std::vector<std::string> names = worldFilesOf(raster);
    names.insert(names.begin(), raster + ".aux.xml");
    return names;
}

Expected<std::string> contentOfSideFile(const std::string& path, std::size_t most) {
    if (kindOf(path) == PathKind::Remote) {
        return unreadable("on the network");
    }
    Expected<FileHead> head = readHead(path, most);
    if (!head) {
        return head.refusal();
    }
    if (head->bytes.size() != head->state.size) {
        return unreadable("too long");
    }
    return std::move(head->bytes);
}

bool isSideFile(const std::string& path) {
    return kindOf(path) != PathKind::Remote && stateOf(path).inode != 0;
}

bool isNamedLikeRaster(const std::string& path) {
    return std::any_of(formats().begin(), formats().end(), [&path](const Format* format) {
        return format->countsByName && hasExtensionOf(*format, path);
    });
}

bool ArchiveFileFinder::findFile(const ImageFormatCodec* codec, const FileSpecifier& base,
                                 const FileSpecifier& nameToLookFor, FileSpecifier& found) {
    const std::string path = toUtf8(base.string());
    if (kindOf(path) != PathKind::InArchive) {
        return others_.findFile(codec, base, nameToLookFor, found);
    }
    const std::string beside = besideFile(path, toUtf8(nameToLookFor.string()));
    if (!readHead(beside, 0)) {
        return false;
    }
    found = fileSpecifier(beside);
    return true;
}

}  // namespace Pyxis
