#include "tool/scene/InputFiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "codec/strings/BufferText.h"
#include "host/Text.h"
#include "host/codecs/Places.h"
#include "sets/ComponentList.h"
#include "tool/scene/Components.h"
#include "tool/scene/InputText.h"
#include "tool/scene/PathParts.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Json.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// Extensions of the rasters, pictures and styles that the tool writes; no side file has one.
constexpr std::array<std::string_view, 9> kWritten = {".vrt",  ".tif",  ".tiff", ".png",  ".jpg",
                                                      ".jpeg", ".webp", ".qml",  ".gtiff"};

bool sameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return fs::equivalent(a, b, error);
}

/// Also for a link that leads nowhere.
bool isThere(const std::string& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

bool isSetDocument(const std::string& path) {
    if (!fileMayListComponents(path)) {
        return false;
    }
    const Pyxis::FileSpecifier set(kest::narrowBuffer(readTextFile(path)),
                                   Pyxis::FileSpecifier::Type::Compound);
    return kest::countComponents(set) > 0;
}

/// Products come with STAC items too, which must not be overwritten.
bool isOwnStacItem(const std::string& path) {
    const std::string_view extension = extensionOf(path);
    if (extension != ".json" && extension != ".geojson") {
        return false;
    }
    const Json item = Json::parse(readTextFile(path), nullptr, false);
    const Json::json_pointer software("/properties/processing:software/kestms");
    return item.is_object() && item.contains(software);
}

bool isOfKindWritten(const std::string& path) {
    return hasExtension(path, kWritten) || isSetDocument(path) || isOwnStacItem(path);
}

/// The files that make up a raster: a header alone does not hold the pixels, and a virtual raster
/// may name others.
std::vector<std::string> partsOf(const std::string& raster) {
    std::vector<std::string> parts;
    const auto image = openImage(raster);
    for (int i = 0; image && i < image->getNumFiles(); ++i) {
        parts.push_back(Pyxis::toUtf8(image->getFile(i).string()));
    }
    return parts;
}

/// Whether a file is a part of one of the rasters.
bool isPartOfOne(const std::string& path, std::set<std::string> rasters) {
    std::vector<std::string> unseen(rasters.begin(), rasters.end());
    while (!unseen.empty()) {
        const std::string raster = std::move(unseen.back());
        unseen.pop_back();
        if (sameFile(path, raster)) {
            return true;
        }
        for (std::string& part : partsOf(raster)) {
            if (rasters.insert(part).second) {
                unseen.push_back(std::move(part));
            }
        }
    }
    return false;
}

/// Whether one of the files, or what it links to, is in the directory.
bool isOneIn(const fs::path& directory, const std::set<std::string>& files) {
    return std::any_of(files.begin(), files.end(), [&directory](const std::string& file) {
        std::error_code gone;
        const fs::path given = fs::absolute(file, gone);
        return sameFile(directory, given.parent_path()) ||
               sameFile(directory, fs::weakly_canonical(given, gone).parent_path());
    });
}

[[noreturn]] void refuse(const std::string& path, const char* reason) {
    throw Failure(ExitCode::Usage, path, reason);
}

constexpr const char* kIsInput = "the output would overwrite an input";
constexpr const char* kExists = "there is such a file already (--overwrite replaces it)";

}  // namespace

void InputFiles::addRaster(const std::string& path) {
    rasters_.insert(path);
    if (const std::string archive = Pyxis::archiveOf(path); !archive.empty()) {
        files_.insert(archive);
    }
}

bool InputFiles::isInput(const std::string& path) const {
    const auto same = [&path](const std::string& input) { return sameFile(path, input); };
    return std::any_of(files_.begin(), files_.end(), same) ||
           std::any_of(rasters_.begin(), rasters_.end(), same) || isPartOfOne(path, rasters_);
}

bool InputFiles::isBesideInputs(const std::string& path) const {
    // A link may also lead beside a raster.
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(fs::absolute(path), error).parent_path();
    const auto isAround = [&folder](const std::string& input) {
        fs::path at = folder;
        while (at.has_relative_path() && !sameFile(at, input)) {
            at = at.parent_path();
        }
        return sameFile(at, input);
    };
    return isOneIn(folder, rasters_) || std::any_of(files_.begin(), files_.end(), isAround);
}

bool InputFiles::areIn(const fs::path& directory) const {
    return isOneIn(directory, rasters_) || isOneIn(directory, files_);
}

void InputFiles::refuseOutput(const std::string& path, bool overwrite) const {
    if (!isThere(path)) {
        for (const std::string_view ending : kSideFileEndings) {
            if (path.ends_with(ending) && isInput(path.substr(0, path.size() - ending.size()))) {
                refuse(path, "the output would become part of an input");
            }
        }
        return;
    }
    if (isInput(path)) {
        refuse(path, kIsInput);
    }
    if (isBesideInputs(path) && !isOfKindWritten(path)) {
        refuse(path, "the output would overwrite a file that lies beside the inputs");
    }
    if (!overwrite) {
        refuse(path, kExists);
    }
}

void InputFiles::refuseSideFile(const std::string& path, bool overwrite) const {
    if (isThere(path) && (!overwrite || isInput(path))) {
        refuse(path, overwrite ? kIsInput : kExists);
    }
}

}  // namespace kestms
