#include "tool/scene/RasterDirectory.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "host/Text.h"
#include "host/codecs/Places.h"
#include "pyxis/FileReadDescriptor.h"
#include "tool/scene/Components.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// Deeper than any product.
constexpr int kDeepestFolder = 16;

/// Common extensions beside rasters; not worth asking the codecs.
constexpr std::array<std::string_view, 16> kOtherExtensions = {
    ".txt", ".xml", ".vrt", ".png", ".jpg", ".jpeg", ".json", ".md",
    ".ovr", ".msk", ".aux", ".imd", ".tfw", ".prj",  ".htm",  ".html"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

bool isHidden(const fs::path& path) {
    return path.filename().string().starts_with('.');
}

/// A file with the name of a raster is listed even when no codec reads it, so that a damaged one
/// does not go unnoticed.
bool isRaster(const fs::path& path) {
    if (Pyxis::isNamedLikeRaster(path.string())) {
        return true;
    }
    const std::string extension = lowered(path.extension().string());
    const Pyxis::ImageFormatCodec* codec = nullptr;
    return std::find(kOtherExtensions.begin(), kOtherExtensions.end(), extension) ==
               kOtherExtensions.end() &&
           Pyxis::FileReadDescriptor::findImageFileCodec(
               Pyxis::fileSpecifier(path.string()), codec) == Pyxis::FormatDecodability::Decodable;
}

/// The pixels of FAST files are in other files of their kind, which are no rasters of their own.
void dropPixelFiles(std::vector<std::string>& paths) {
    std::set<std::string> pixels;
    for (const std::string& path : paths) {
        if (lowered(fs::path(path).extension().string()) == ".fst") {
            const std::vector<std::string> files = filesOf(path);
            pixels.insert(files.begin() + 1, files.end());
        }
    }
    std::erase_if(paths, [&pixels](const std::string& path) { return pixels.contains(path); });
}

std::vector<std::string> sorted(std::vector<std::string> paths, const std::string& place,
                                const char* whyNone) {
    if (paths.empty()) {
        throw Failure(ExitCode::CannotRead, place, whyNone);
    }
    dropPixelFiles(paths);
    std::sort(paths.begin(), paths.end(), comesBefore);
    return paths;
}

std::vector<std::string> rasterFilesInArchive(const std::string& archive) {
    const std::string inside = insideOf(archive);
    Pyxis::Expected<std::vector<std::string>> files = Pyxis::filesInArchive(inside);
    if (!files) {
        throw Failure(ExitCode::CannotRead, archive, files.refusal().reason);
    }
    std::vector<std::string> rasters;
    for (std::string& file : *files) {
        throwIfInterrupted();
        if (!isHidden(file) && isRaster(file)) {
            rasters.push_back(std::move(file));
        }
    }
    return sorted(std::move(rasters), archive, "the archive holds no raster files");
}

/// Removes and returns the leading digits, without leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit) - text.begin();
    std::string_view number = text.substr(0, static_cast<std::size_t>(end));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

}  // namespace

bool comesBefore(std::string_view left, std::string_view right) {
    std::string_view a = left;
    std::string_view b = right;
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::string_view first = takeNumber(a);
            const std::string_view second = takeNumber(b);
            if (first != second) {
                return first.size() != second.size() ? first.size() < second.size()
                                                     : first < second;
            }
            continue;
        }
        if (a.front() != b.front()) {
            return static_cast<unsigned char>(a.front()) < static_cast<unsigned char>(b.front());
        }
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    // Equal except for leading zeros: any fixed order will do.
    return a.empty() && b.empty() ? left < right : a.empty();
}

std::string insideOf(const std::string& path) {
    if (Pyxis::kindOfPath(path) == Pyxis::PathKind::InArchive) {
        return isRaster(path) || !Pyxis::filesInArchive(path) ? "" : path;
    }
    std::error_code error;
    return fs::is_regular_file(path, error) ? Pyxis::insideOfArchive(path) : std::string();
}

bool isPlaceToLook(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error) || !insideOf(path).empty();
}

std::vector<std::string> rasterFilesBelow(const std::string& directory) {
    std::error_code none;
    if (!fs::is_directory(directory, none)) {
        return rasterFilesInArchive(directory);
    }
    std::vector<std::string> paths;
    std::error_code error;
    fs::recursive_directory_iterator entries(directory,
                                             fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
        throwIfInterrupted();
        std::error_code gone;
        if (isHidden(entries->path()) || entries.depth() >= kDeepestFolder) {
            entries.disable_recursion_pending();
        }
        if (!isHidden(entries->path()) && entries->is_regular_file(gone) &&
            isRaster(entries->path())) {
            paths.push_back(entries->path().string());
        }
    }
    if (error) {
        throw Failure(ExitCode::CannotRead, directory, error.message());
    }
    return sorted(std::move(paths), directory, "the directory holds no raster files");
}

}  // namespace kestms
