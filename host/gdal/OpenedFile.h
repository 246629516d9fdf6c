#pragma once

#include <gdal_priv.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/file/FileHead.h"
#include "host/gdal/ErrorCapture.h"
#include "host/gdal/GdalGeoCorrelation.h"
#include "host/tiff/KnownFacts.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

class GdalFormat;

/// What a frame answers without touching its file again.
struct FrameFacts {
    std::size_t part = 0;  ///< which of the file's datasets
    int band = 0;          ///< GDAL's number, from 1
    int width = 0;
    int height = 0;
    int blockWidth = 0;
    int blockHeight = 0;
    GDALDataType type = GDT_Unknown;
    SampleFormat format = SampleFormat::UnsignedInteger;
    std::vector<std::uint8_t> colours;  ///< red, green, blue, alpha; empty without a colour table
    std::string ownText;  ///< what the format itself tells of the band: a letter, a file's name
};

/// A file that is open for reading: what is known of it, and GDAL's datasets, which close when too
/// many are open and open again when they are used. A file whose own bytes tell everything is not
/// opened by GDAL before it is used. Several images may share it, on
/// several threads; GDAL's datasets may not be used by two threads at once, so every use of them
/// goes through `Use`.
class OpenedFile {
  public:
    /// Opens a plain regular file with the format's driver. Null, with the reason in `why`, when
    /// that cannot be done.
    static std::shared_ptr<OpenedFile> open(const GdalFormat& format, const std::string& path,
                                            std::string& why);

    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile();

    /// The path as it was given.
    const std::string& path() const { return path_; }
    /// The path from the root on, for as long as this lives.
    const std::string& absolutePath() const { return absolutePath_; }
    /// Bytes in the opened file.
    std::uint64_t size() const { return stamp_.file.size; }
    /// Whether the file is another now than when it was opened.
    bool hasChanged() const;
    /// Whether a change is sure to be noticed.
    bool isSettled() const { return stamp_.settled(); }
    /// The files that the image is made of, the opened one first.
    const std::vector<std::string>& files() const { return files_; }
    /// What the file's own bytes tell of it.
    const KnownFacts& known() const { return known_; }
    /// What the file says of itself as a whole.
    const std::string& description() const { return description_; }
    int numFrames() const { return static_cast<int>(frames_.size()); }
    const FrameFacts& frame(int index) const { return frames_.at(static_cast<std::size_t>(index)); }
    /// The driver's own name for the frame's dataset, with "%s" where the path goes.
    const std::string& partName(int index) const { return partNames_.at(frame(index).part); }
    /// Where the frame lies, worked out on the first request; null when it is not georeferenced or
    /// the file is gone.
    std::shared_ptr<const GeoFacts> geoFacts(int index);

    /// Holds the datasets for this thread, open, and keeps GDAL silent.
    class Use {
      public:
        Use(OpenedFile& file, int frame);
        /// Null when the file could not be opened again or has changed.
        GDALRasterBand* band() const { return band_; }

      private:
        std::lock_guard<std::mutex> lock_;
        ErrorCapture errors_;
        GDALRasterBand* band_;
    };

    /// Closes the datasets unless somebody is using them; answers whether they are closed.
    bool closeIfIdle();

    // For formats, while they load.

    /// Whether GDAL has opened the file. Where its own bytes told everything it has not.
    bool isOpen() const { return !datasets_.empty(); }
    GDALDataset& mainDataset() { return *datasets_.front(); }
    /// Adds the raster that the file's own bytes told of as a frame.
    void addKnownRaster();
    /// Opens another dataset of the same file by the driver's own name for it, with "%s" where the
    /// path goes; null on failure.
    GDALDataset* openPart(const std::string& name);
    /// Adds a dataset's bands as frames, each with its own text as far as there are any.
    void addBandsOf(GDALDataset& dataset, const std::vector<std::string>& ownTexts = {});
    void addFile(std::string path) { files_.push_back(std::move(path)); }
    void setDescription(std::string text) { description_ = std::move(text); }

  private:
    OpenedFile(const GdalFormat& format, std::string path, std::string absolutePath,
               const FileHead& head);
    std::string load();
    void takeWorldFile();
    void addPart(const std::string& name);
    bool openAgain();
    GDALDataset* dataset(std::size_t part);
    std::shared_ptr<const GeoFacts> placeOf(const FrameFacts& frame);
    std::string nameOfPart(std::string name) const;

    const GdalFormat& format_;
    std::string path_;
    std::string absolutePath_;
    FileStamp stamp_;
    KnownFacts known_;
    bool withWorldFile_ = false;
    std::vector<std::string> files_;
    std::string description_;
    std::vector<FrameFacts> frames_;
    std::vector<std::string> partNames_;

    std::mutex mutex_;  // guards what follows
    std::vector<GDALDatasetUniquePtr> datasets_;
    std::vector<std::optional<std::shared_ptr<const GeoFacts>>> geoFacts_;  // one a dataset
};

}  // namespace Pyxis
