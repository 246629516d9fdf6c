#include "tool/scene/RasterDirectory.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "host/Text.h"
#include "pyxis/FileReadDescriptor.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// A file so named is listed even when no codec reads it, so that a damaged one does not go
/// unnoticed.
constexpr std::array<std::string_view, 5> kRasterExtensions = {".tif", ".tiff", ".ntf", ".nitf",
                                                               ".jp2"};

/// Products nest less deep than this.
constexpr int kDeepestFolder = 16;

/// What usually lies beside rasters; not worth asking the codecs.
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

template <std::size_t N>
bool isOneOf(const std::string& extension, const std::array<std::string_view, N>& extensions) {
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

bool isRaster(const fs::directory_entry& entry) {
    std::error_code error;
    if (entry.path().filename().string().starts_with('.') || !entry.is_regular_file(error)) {
        return false;
    }
    const std::string extension = lowered(entry.path().extension().string());
    if (isOneOf(extension, kRasterExtensions) || isOneOf(extension, kOtherExtensions)) {
        return isOneOf(extension, kRasterExtensions);
    }
    const Pyxis::ImageFormatCodec* codec = nullptr;
    return Pyxis::FileReadDescriptor::findImageFileCodec(
               Pyxis::fileSpecifier(entry.path().string()), codec) ==
           Pyxis::FormatDecodability::Decodable;
}

/// Takes a run of digits off the front, without its leading zeros.
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
    // Alike but for leading zeros: any fixed order will do.
    return a.empty() && b.empty() ? left < right : a.empty();
}

std::vector<std::string> rasterFilesBelow(const std::string& directory) {
    std::vector<std::string> paths;
    std::error_code error;
    fs::recursive_directory_iterator entries(directory,
                                             fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
        throwIfInterrupted();
        if (entries->path().filename().string().starts_with('.') ||
            entries.depth() >= kDeepestFolder) {
            entries.disable_recursion_pending();
        }
        if (isRaster(*entries)) {
            paths.push_back(entries->path().string());
        }
    }
    if (error) {
        throw Failure(ExitCode::CannotRead, directory, error.message());
    }
    if (paths.empty()) {
        throw Failure(ExitCode::CannotRead, directory, "the directory holds no raster files");
    }
    std::sort(paths.begin(), paths.end(), comesBefore);
    return paths;
}

}  // namespace kestms
