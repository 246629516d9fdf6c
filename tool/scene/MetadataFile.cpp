#include "tool/scene/MetadataFile.h"
#include "tool/scene/PathParts.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "host/codecs/Places.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr const char* kLandsat = "_MTL.txt";
constexpr std::array kOfTile = {"MTD_TL.xml", "metadata.xml", "tileInfo.json"};

/// Names that do not begin with that of their scene.
bool isNamedByProduct(std::string_view name) {
    constexpr std::array<std::string_view, 5> kStarts = {"MTD_", "INSPIRE.", "manifest.",
                                                         "metadata.", "tileInfo."};
    return std::any_of(kStarts.begin(), kStarts.end(),
                       [&name](const auto start) { return name.starts_with(start); });
}

}  // namespace

bool isMetadataFile(const std::string& path) {
    constexpr std::array<std::string_view, 6> kExtensions = {".xml",  ".txt", ".json",
                                                             ".html", ".htm", ".safe"};
    return hasExtension(path, kExtensions);
}

bool isLandsatMetadata(const std::string& path) {
    return path.ends_with(kLandsat);
}

bool mayDescribeScene(const std::string& path) {
    const std::string_view name = nameOf(path);
    return isMetadataFile(path) && (isNamedByProduct(name) || name.find("_MTL.") != name.npos);
}

bool describesScene(const std::string& path, const std::string& scene) {
    const std::string_view name = nameOf(path);
    return name.starts_with(scene) || isNamedByProduct(name);
}

std::string describedFolder(const std::string& path) {
    const fs::path given = fs::path(path).parent_path();
    std::error_code error;
    const fs::path own = fs::weakly_canonical(given.empty() ? "." : given, error);
    const bool isOfDatastrip = own.parent_path().filename() == "DATASTRIP";
    const auto described = [isOfDatastrip](const fs::path& folder) {
        return isOfDatastrip ? folder.lexically_normal().parent_path().parent_path() : folder;
    };
    const fs::path name = described(given).filename();
    const bool isNamed = !name.empty() && name != "." && name != "..";
    return described(isNamed ? given : own);
}

std::string metadataFileBeside(const std::string& name, const std::vector<std::string>& files) {
    if (files.empty() || name.empty()) {
        return {};
    }
    const fs::path folder = fs::path(files.front()).parent_path();
    const fs::path above = folder.parent_path();
    const fs::path ofTile = above.filename() == "IMG_DATA" ? above.parent_path() : above;
    std::vector<fs::path> candidates = {folder / (name + kLandsat)};
    for (const fs::path& place : {folder, ofTile}) {
        for (const char* const file : kOfTile) {
            candidates.push_back(place / file);
        }
    }
    const auto found = std::find_if(candidates.begin(), candidates.end(), [](const fs::path& path) {
        return Pyxis::isSideFile(path.string());
    });
    return found == candidates.end() ? std::string() : found->string();
}

}  // namespace kestms
