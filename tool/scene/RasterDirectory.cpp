#include "tool/scene/RasterDirectory.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

#include "host/codecs/Places.h"
#include "tool/scene/Components.h"
#include "tool/scene/PathParts.h"
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

/// Beside other rasters they are previews, or made of them.
constexpr std::array<std::string_view, 4> kSecondaryExtensions = {".png", ".jpg", ".jpeg", ".vrt"};

constexpr std::array<std::string_view, 1> kFastHeader = {".fst"};
constexpr std::array<std::string_view, 1> kCompressed = {".gz"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHidden(std::string_view path) {
    return nameOf(path).starts_with('.');
}

/// A file with the name of a raster is listed even when no codec reads it, so that a damaged one
/// does not go unnoticed.
bool isRaster(const std::string& path) {
    return Pyxis::isNamedLikeRaster(path) ||
           (!hasExtension(path, kOtherExtensions) && isDecodable(path));
}

/// "B4.TIF.gz", which no codec reads.
bool isCompressedRaster(const std::string& path) {
    return hasExtension(path, kCompressed) &&
           Pyxis::isNamedLikeRaster(path.substr(0, path.rfind('.')));
}

/// The pixels of FAST files are in other files of their kind, which are no rasters of their own.
void dropPixelFiles(std::vector<std::string>& paths) {
    std::set<std::string> pixels;
    for (const std::string& path : paths) {
        if (hasExtension(path, kFastHeader)) {
            const std::vector<std::string> files = filesOf(path);
            pixels.insert(files.begin() + 1, files.end());
        }
    }
    std::erase_if(paths, [&pixels](const std::string& path) { return pixels.contains(path); });
}

std::string counted(std::size_t count, const char* word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

/// The rasters among the files of a place.
class RasterFiles {
  public:
    void add(const std::string& path) {
        if (isHidden(path)) {
            return;
        }
        if (!Pyxis::insideOfArchive(path).empty()) {
            ++archives_;
            return;
        }
        if (isCompressedRaster(path)) {
            ++compressed_;
        } else if (isRaster(path)) {
            rasters_.push_back(path);
        } else if (hasExtension(path, kSecondaryExtensions)) {
            secondary_.push_back(path);
        }
    }

    /// A link to a folder.
    void addLink() { ++links_; }

    /// In natural order. Throws a Failure when there are none.
    FolderContents take(const std::string& place, const char* whyNone) {
        if (rasters_.empty()) {
            std::copy_if(secondary_.begin(), secondary_.end(), std::back_inserter(rasters_),
                         isDecodable);
        }
        const std::string others = unopened();
        if (rasters_.empty()) {
            throw Failure(ExitCode::CannotRead, place,
                          whyNone + (others.empty() ? "" : ", but " + others));
        }
        dropPixelFiles(rasters_);
        std::sort(rasters_.begin(), rasters_.end(), comesBefore);
        return {std::move(rasters_), others};
    }

  private:
    std::string unopened() const {
        std::string text = archives_ > 0 ? counted(archives_, "archive") : "";
        if (links_ > 0) {
            text += (text.empty() ? "" : " and ") + counted(links_, "linked folder");
        }
        text += text.empty() ? "" : " (name one to look into it)";
        if (compressed_ > 0) {
            text += (text.empty() ? "" : ", ") + counted(compressed_, "file") +
                    " compressed with gzip (unpack to read)";
        }
        return text;
    }

    std::size_t archives_ = 0;
    std::size_t links_ = 0;
    std::size_t compressed_ = 0;
    std::vector<std::string> rasters_;
    std::vector<std::string> secondary_;  ///< count only where there is nothing else
};

FolderContents rasterFilesInArchive(const std::string& archive) {
    const std::string inside = insideOf(archive);
    Pyxis::Expected<std::vector<std::string>> files = Pyxis::filesInArchive(inside);
    if (!files) {
        throw Failure(ExitCode::CannotRead, archive, files.refusal().reason);
    }
    RasterFiles rasters;
    for (const std::string& file : *files) {
        throwIfInterrupted();
        rasters.add(file);
    }
    return rasters.take(archive, "the archive holds no raster files");
}

/// Removes and returns the leading digits, without leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit) - text.begin();
    std::string_view number = text.substr(0, static_cast<std::size_t>(end));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

fs::file_status statusOf(const std::string& path) {
    std::error_code error;
    return fs::status(path, error);
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

std::string insideOf(const std::string& path, const fs::file_status& status) {
    if (Pyxis::kindOf(path) == Pyxis::PathKind::InArchive) {
        const bool isOneFile = path.starts_with("/vsigzip/");  // though it may unpack to a tar
        return isOneFile || isRaster(path) || !Pyxis::filesInArchive(path) ? "" : path;
    }
    return fs::is_regular_file(status) ? Pyxis::insideOfArchive(path) : std::string();
}

std::string insideOf(const std::string& path) {
    return insideOf(path, statusOf(path));
}

bool isPlaceToLook(const std::string& path, const fs::file_status& status) {
    return fs::is_directory(status) || !insideOf(path, status).empty();
}

bool isPlaceToLook(const std::string& path) {
    return isPlaceToLook(path, statusOf(path));
}

FolderContents rasterFilesBelow(const std::string& directory) {
    std::error_code none;
    if (!fs::is_directory(directory, none)) {
        return rasterFilesInArchive(directory);
    }
    // A scene may have the name of its folder.
    const std::string last =
        (fs::path(directory) / "").lexically_normal().parent_path().filename().string();
    const bool isNamed = !last.empty() && last != "." && last != "..";
    RasterFiles rasters;
    std::error_code error;
    if (fs::directory_iterator(directory, error); error) {  // unlike folders below, not skipped
        throw Failure(ExitCode::CannotRead, directory, error.message());
    }
    fs::recursive_directory_iterator entries(
        isNamed ? fs::path(directory) : fs::weakly_canonical(directory, none),
        fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
        throwIfInterrupted();
        std::error_code gone;
        if (isHidden(entries->path().native()) || entries.depth() >= kDeepestFolder) {
            entries.disable_recursion_pending();
        }
        if (entries->is_regular_file(gone)) {
            rasters.add(entries->path().string());
        } else if (!isHidden(entries->path().native()) && entries->is_symlink(gone) &&
                   entries->is_directory(gone)) {
            rasters.addLink();
        }
    }
    if (error) {
        throw Failure(ExitCode::CannotRead, directory, error.message());
    }
    return rasters.take(directory, "the directory holds no raster files");
}

void noteUnopened(const Context& context, const std::string& folder,
                  const FolderContents& contents) {
    if (!contents.unopened.empty()) {
        context.warn(folder, "not looked into: " + contents.unopened);
    }
}

}  // namespace kestms
