#include "tool/scene/InputFiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "codec/strings/BufferText.h"
#include "host/Text.h"
#include "pyxis/FileReadDescriptor.h"
#include "pyxis/ReadImageFile.h"
#include "sets/ComponentList.h"
#include "tool/scene/InputText.h"
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
    const std::string extension = fs::path(path).extension().string();
    if (extension != ".json" && extension != ".geojson") {
        return false;
    }
    const Json item = Json::parse(readTextFile(path), nullptr, false);
    const Json::json_pointer software("/properties/processing:software/kestms");
    return item.is_object() && item.contains(software);
}

bool isOfKindWritten(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return std::find(kWritten.begin(), kWritten.end(), extension) != kWritten.end() ||
           isSetDocument(path) || isOwnStacItem(path);
}

/// A header alone does not hold the pixels.
bool isPartOf(const std::string& path, const std::string& raster) {
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(raster);
    const Pyxis::ImageFormatCodec* codec = nullptr;
    if (Pyxis::FileReadDescriptor::findImageFileCodec(file, codec) !=
        Pyxis::FormatDecodability::Decodable) {
        return false;
    }
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec->openImage(&file));
    for (int i = 0; image && i < image->getNumFiles(); ++i) {
        if (sameFile(path, Pyxis::toUtf8(image->getFile(i).string()))) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool InputFiles::isInput(const std::string& path) const {
    const auto same = [&path](const std::string& input) { return sameFile(path, input); };
    return std::any_of(files_.begin(), files_.end(), same) ||
           std::any_of(rasters_.begin(), rasters_.end(), same) ||
           std::any_of(rasters_.begin(), rasters_.end(),
                       [&path](const std::string& raster) { return isPartOf(path, raster); });
}

bool InputFiles::liesBesideRaster(const std::string& path) const {
    // A link may also lead beside a raster.
    std::error_code error;
    const fs::path directory = fs::weakly_canonical(fs::absolute(path), error).parent_path();
    return std::any_of(rasters_.begin(), rasters_.end(), [&directory](const std::string& raster) {
        std::error_code gone;
        const fs::path given = fs::absolute(raster, gone);
        return sameFile(directory, given.parent_path()) ||
               sameFile(directory, fs::weakly_canonical(given, gone).parent_path());
    });
}

void InputFiles::refuseOutput(const std::string& path, bool overwrite) const {
    std::error_code error;
    if (!fs::exists(path, error)) {
        return;
    }
    const auto refuse = [&path](const char* reason) {
        throw Failure(ExitCode::Usage, path, reason);
    };
    if (isInput(path)) {
        refuse("the output would overwrite an input");
    }
    if (liesBesideRaster(path) && !isOfKindWritten(path)) {
        refuse("the output would overwrite a file that lies beside the inputs");
    }
    if (!overwrite) {
        refuse("there is such a file already (--overwrite replaces it)");
    }
}

}  // namespace kestms
