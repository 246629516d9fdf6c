#pragma once

#include <gdal_priv.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/codecs/ErrorCapture.h"
#include "host/codecs/GdalGeoCorrelation.h"

namespace Pyxis {

class GdalFormat;

/// One band of an opened file.
struct FrameSource {
    GDALDataset* dataset = nullptr;
    int band = 0;         ///< GDAL's number, from 1
    std::string ownText;  ///< what the format itself tells of the band: a letter, a file's name
};

/// A file that GDAL has opened for reading. Several images may share it, on several threads; GDAL's
/// datasets may not be used by two threads at once, so every use goes through `use`.
class OpenedFile {
  public:
    /// Opens a plain regular file with the format's driver. Null, with the reason in `why`, when
    /// that cannot be done.
    static std::shared_ptr<OpenedFile> open(const GdalFormat& format, const std::string& path,
                                            std::string& why);

    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile();

    /// Holds the file for this thread and keeps GDAL silent.
    struct Use {
        explicit Use(std::mutex& mutex) : lock(mutex) {}
        std::lock_guard<std::mutex> lock;
        ErrorCapture errors;
    };
    Use use() { return Use(mutex_); }

    /// The path as it was given.
    const std::string& path() const { return path_; }
    /// Bytes in the opened file.
    std::uint64_t size() const { return size_; }
    /// The files that the image is made of, the opened one first.
    const std::vector<std::string>& files() const { return files_; }
    int numFrames() const { return static_cast<int>(frames_.size()); }
    FrameSource& frame(int index) { return frames_.at(static_cast<std::size_t>(index)); }
    GDALDataset& mainDataset() { return *datasets_.front(); }

    // The rest is for the holder of a `Use`, and for formats while they load.

    /// The frame's band; it lives as long as the file is open.
    GDALRasterBand& band(int index);
    /// Where the frame lies, worked out once; null when it is not georeferenced.
    std::shared_ptr<const GeoFacts> geoFacts(int index);
    void addBandsOf(GDALDataset& dataset);
    void addFrame(FrameSource frame) { frames_.push_back(std::move(frame)); }
    void addFile(std::string path) { files_.push_back(std::move(path)); }
    /// Opens another dataset of the same file by the driver's own name for it; null on failure.
    GDALDataset* openPart(const GdalFormat& format, const std::string& name);

  private:
    OpenedFile(std::string path, std::uint64_t size);

    std::mutex mutex_;
    std::string path_;
    std::uint64_t size_;
    std::vector<std::string> files_;
    std::vector<GDALDatasetUniquePtr> datasets_;
    std::vector<FrameSource> frames_;
    GDALDataset* geoDataset_ = nullptr;
    std::shared_ptr<const GeoFacts> geoFacts_;
};

/// What is known of a file before GDAL sees it.
struct FileHead {
    std::string bytes;       ///< the first ones, `GdalFormat::kHeadBytes` where there are so many
    std::uint64_t size = 0;  ///< of the whole file
};

/// The head of a plain regular file. Nothing, with the reason in `why`, for anything else.
std::optional<FileHead> readHead(const std::string& path, std::string& why);

}  // namespace Pyxis
