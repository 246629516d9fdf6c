#include "tool/raster/GeoTiffWriter.h"

#include <cpl_string.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <future>
#include <optional>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/CloudOptimized.h"
#include "tool/raster/ComponentDescription.h"
#include "tool/raster/CreationOptions.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/RasterWindow.h"
#include "tool/raster/SmallCache.h"
#include "tool/raster/StringLists.h"
#include "tool/raster/TileCopy.h"
#include "tool/raster/XmlText.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// Of a Cloud Optimized GeoTIFF, what the copy takes after the pixels have been read.
constexpr double kCopyPart = 0.5;

bool sameValue(const std::optional<double>& a, const std::optional<double>& b) {
    const bool bothNan = a && b && std::isnan(*a) && std::isnan(*b);
    return bothNan || a == b;
}

std::optional<double> noDataOf(GDALRasterBand& band) {
    int has = FALSE;
    const double value = band.GetNoDataValue(&has);
    return has != FALSE ? std::optional(value) : std::nullopt;
}

bool hasSignedBytes(GDALRasterBand& band) {
    const char* type = band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE");
    return type != nullptr && EQUAL(type, "SIGNEDBYTE");
}

/// All but what GDAL says of the storage of `from`.
void copyMetadata(GDALMajorObject& from, GDALMajorObject& to) {
    const CPLStringList domains(from.GetMetadataDomainList());
    for (const std::string& domain : listItems(domains.List())) {
        if (isCarried(domain)) {
            to.SetMetadata(from.GetMetadata(domain.c_str()), domain.c_str());
        }
    }
}

void dropStatistics(GDALMajorObject& object) {
    CPLStringList others;
    for (const std::string& item : listItems(object.GetMetadata())) {
        if (!isStatistic(item)) {
            others.AddString(item.c_str());
        }
    }
    object.SetMetadata(others.List());
}

/// Writes one file: the bands of a virtual raster, and one mask for all where they need it.
class Writer {
  public:
    Writer(const OutputRaster& raster, const VirtualRaster& pixels, const GeoTiffOptions& options,
           const OutputFile& output)
        : raster_(raster),
          pixels_(pixels),
          from_(pixels.dataset()),
          options_(options),
          output_(output),
          type_(first().GetRasterDataType()) {
        for (GDALRasterBand* band : from_.GetBands()) {
            if (hasSignedBytes(*band) != hasSignedBytes(first())) {
                throw Failure(ExitCode::NotDecodable, pathOf(*band),
                              "its samples and those of other bands do not fit into one file");
            }
            type_ = GDALDataTypeUnion(type_, band->GetRasterDataType());
            sharesNoData_ = sharesNoData_ && sameValue(noDataOf(*band), noDataOf(first()));
            hasMasks_ = hasMasks_ || (band->GetMaskFlags() & (GMF_ALL_VALID | GMF_NODATA)) == 0;
        }
    }

    std::vector<std::string> write(const std::string& path, bool withUsers,
                                   const ProgressFunction& progress) {
        const Pyxis::ErrorCapture errors;
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        CPLStringList options = creationOptions(options_, type_, withUsers);
        if (hasSignedBytes(first())) {
            options.SetNameValue("PIXELTYPE", "SIGNEDBYTE");
        }
        const std::optional<TileLayout> layout = layoutToCopy(options, withUsers);
        if (layout) {
            options.SetNameValue("SPARSE_OK", "TRUE");  // GDAL writes no tile
            options.SetNameValue("BLOCKXSIZE", std::to_string(layout->side()).c_str());
            options.SetNameValue("BLOCKYSIZE", std::to_string(layout->side()).c_str());
        }
        to_.reset(driver->Create(path.c_str(), from_.GetRasterXSize(), from_.GetRasterYSize(),
                                 from_.GetRasterCount(), type_, options.List()));
        noteWarning(errors);
        if (to_) {
            describe();
            if (layout) {
                to_.reset();
                tiles_.emplace(path, *layout);
            }
            copyPixels(progress);
        }
        // A full disk may show only when the last tiles are written.
        to_.reset();
        const bool isWritten = !tiles_ || tiles_->finish();
        tiles_.reset();
        if (!isWritten || !errors.message().empty()) {
            output_.fail(errors.message());
        }
        return notes_;
    }

  private:
    GDALRasterBand& first() { return *from_.GetRasterBand(1); }
    GDALRasterBand& target(int band) { return *to_->GetRasterBand(band); }

    const std::string& pathOf(GDALRasterBand& band) const {
        return raster_.bands[static_cast<std::size_t>(band.GetBand()) - 1].band.componentPath;
    }

    void describe() {
        std::array<double, 6> transform{};
        from_.GetGeoTransform(transform.data());
        to_->SetGeoTransform(transform.data());
        to_->SetSpatialRef(from_.GetSpatialRef());
        copyMetadata(from_, *to_);
        for (GDALRasterBand* band : from_.GetBands()) {
            describeBand(*band, target(band->GetBand()));
        }
        if (const auto noData = noDataOf(first()); noData && sharesNoData_) {
            target(1).SetNoDataValue(*noData);
        }
    }

    void describeBand(GDALRasterBand& band, GDALRasterBand& copy) {
        copy.SetDescription(band.GetDescription());
        copy.SetColorInterpretation(band.GetColorInterpretation());
        int has = FALSE;
        if (const double scale = band.GetScale(&has); has != FALSE) {
            copy.SetScale(scale);
            copy.SetOffset(band.GetOffset());
        }
        if (*band.GetUnitType() != '\0') {
            copy.SetUnitType(band.GetUnitType());
        }
        copyMetadata(band, copy);
        if (needsMask()) {
            dropStatistics(copy);  // the mask hides pixels that they count
        }
        if (band.GetColorTable() != nullptr) {
            copy.SetColorInterpretation(GCI_Undefined);
            notes_.push_back(
                std::string(band.GetDescription()) +
                ": without its colour table, which a file of several bands cannot have");
        }
    }

    /// A band's part of a window, as it was read.
    struct Piece {
        std::vector<std::byte> samples;
        std::vector<std::uint8_t> mask;
    };

    bool needsMask() const { return !sharesNoData_ || hasMasks_; }

    /// That of the components, if their tiles can be copied as they are.
    std::optional<TileLayout> layoutToCopy(const CPLStringList& options, bool withUsers) const {
        const bool isOurs = !withUsers || options_.creationOptions.empty();
        return isOurs && pixels_.isUnchanged() && !needsMask()
                   ? sharedLayout(raster_, type_, options)
                   : std::nullopt;
    }

    /// On a thread of its own; nobody else uses what is read from meanwhile.
    void read(int band, const RasterWindow& window, Piece& piece) {
        const GdalSession session;
        GDALRasterBand& from = *from_.GetRasterBand(band);
        bool isRead = readWindow(from, window, type_, piece.samples.data());
        if (needsMask()) {
            piece.mask.resize(window.area());
            isRead = isRead && readWindow(*from.GetMaskBand(), window, GDT_Byte, piece.mask.data());
        }
        if (!isRead) {
            session.failToRead(pathOf(from));
        }
    }

    /// Reads a piece while the one before is compressed and written. Each band in turn, so that
    /// the mask of a window is complete with its last band. Pieces whose tiles are copied are read
    /// as well, so that a damaged tile is noticed.
    void copyPixels(const ProgressFunction& progress) {
        addMask();
        const int count = from_.GetRasterCount();
        const auto bytes = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type_));
        const std::vector<RasterWindow> windows = windowsOf(
            from_, isInterleaved() ? bytes * from_.GetBands().size() : bytes, blockRows());
        std::array<Piece, 2> pieces;
        for (Piece& piece : pieces) {
            piece.samples.resize(windows.front().area() * bytes);
        }
        const std::size_t total = windows.size() * static_cast<std::size_t>(count);
        const auto readAhead = [&](std::size_t number) {
            const RasterWindow& window = windows[number / static_cast<std::size_t>(count)];
            const int band = static_cast<int>(number % static_cast<std::size_t>(count)) + 1;
            // Where no thread can be had, it is read when it is asked for.
            return std::async(
                [this, band, &window, &piece = pieces[number % 2]] { read(band, window, piece); });
        };
        std::future<void> ahead = readAhead(0);
        for (std::size_t number = 0; number < total; ++number) {
            ahead.get();
            if (number + 1 < total) {
                ahead = readAhead(number + 1);
            }
            write(static_cast<int>(number % static_cast<std::size_t>(count)) + 1,
                  windows[number / static_cast<std::size_t>(count)], pieces[number % 2]);
            progress(static_cast<double>(number + 1) / static_cast<double>(total));
        }
    }

    void write(int band, const RasterWindow& window, Piece& piece) {
        const Pyxis::ErrorCapture errors;
        if (tiles_) {
            if (!tiles_->copy(pathOf(*from_.GetRasterBand(band)), band - 1, window)) {
                output_.fail(errors.message());
            }
            return;
        }
        bool isWritten = writeWindow(target(band), window, type_, piece.samples.data());
        if (needsMask()) {
            if (band == 1) {
                mask_.assign(window.area(), 255);
            }
            std::transform(mask_.begin(), mask_.end(), piece.mask.begin(), mask_.begin(),
                           [](std::uint8_t a, std::uint8_t b) { return std::min(a, b); });
        }
        if (band == from_.GetRasterCount()) {
            isWritten = isWritten && (!needsMask() || writeWindow(*target(1).GetMaskBand(), window,
                                                                  GDT_Byte, mask_.data()));
        }
        // Tiles of a window are whole. Where they hold all bands, they are with the last one.
        if (!isInterleaved()) {
            target(band).FlushCache(false);
        } else if (band == from_.GetRasterCount()) {
            to_->FlushCache(false);
        }
        if (!isWritten) {
            output_.fail(errors.message());
        }
        noteWarning(errors);
    }

    /// Of creation options: NBITS may clip pixels.
    void noteWarning(const Pyxis::ErrorCapture& messages) {
        const std::string note = "GDAL warns: " + output_.withGivenName(messages.warning());
        if (!messages.warning().empty() &&
            std::find(notes_.begin(), notes_.end(), note) == notes_.end()) {
            notes_.push_back(note);
        }
    }

    /// Whether tiles hold all bands.
    bool isInterleaved() {
        if (!to_) {
            return false;
        }
        const char* order = to_->GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
        return order != nullptr && EQUAL(order, "PIXEL") && from_.GetRasterCount() > 1;
    }

    /// The heights of blocks, read and written. Those of the virtual raster say nothing.
    std::vector<int> blockRows() {
        std::vector<int> rows;
        for (const OutputBand& each : raster_.bands) {
            rows.push_back(each.band.block.height);
        }
        if (to_) {
            int columns = 0;
            target(1).GetBlockSize(&columns, &rows.emplace_back());
        }
        return rows;
    }

    /// A GeoTIFF has one no-data value and one mask. The mask shows the pixels that all bands have.
    void addMask() {
        if (needsMask()) {
            notes_.push_back(std::string(sharesNoData_
                                             ? "the bands have masks"
                                             : "the bands have different no-data values") +
                             ": one mask shows where all of them have data");
            to_->CreateMaskBand(GMF_PER_DATASET);
        }
    }

    const OutputRaster& raster_;
    const VirtualRaster& pixels_;
    GDALDataset& from_;
    const GeoTiffOptions& options_;
    const OutputFile& output_;
    GDALDataType type_;
    GDALDatasetUniquePtr to_;
    std::optional<TileCopy> tiles_;  ///< in place of `to_`, where tiles are copied
    bool sharesNoData_ = true;
    bool hasMasks_ = false;
    std::vector<std::uint8_t> mask_;  ///< of the window that is being written
    std::vector<std::string> notes_;
};

/// A TIFF file has no place for names of categories. GDAL looks for them in its auxiliary file.
void writeCategories(GDALDataset& raster, const std::string& path, const OutputFile& output) {
    std::string bands;
    for (GDALRasterBand* band : raster.GetBands()) {
        std::string names;
        for (const std::string& name : listItems(band->GetCategoryNames())) {
            names += "<Category>" + escapedMarkup(name) + "</Category>";
        }
        if (!names.empty()) {
            bands += "<PAMRasterBand band=\"" + std::to_string(band->GetBand()) +
                     "\"><CategoryNames>" + names + "</CategoryNames></PAMRasterBand>\n";
        }
    }
    if (!bands.empty()) {
        std::ofstream file(path + ".aux.xml");
        file << "<PAMDataset>\n" << bands << "</PAMDataset>\n";
        file.close();
        if (!file) {
            output.fail("write failed");
        }
    }
}

}  // namespace

std::vector<std::string> writeGeoTiff(const OutputRaster& raster, const VirtualRaster& pixels,
                                      const GeoTiffOptions& options, const OutputFile& output,
                                      const ProgressFunction& progress) {
    // The codecs register no more drivers than the inputs need.
    GDALAllRegister();
    checkCreationOptions(options);
    const GdalSession session;
    const SmallCache cache;
    Writer writer(raster, pixels, options, output);
    std::vector<std::string> notes;
    if (!options.cloudOptimized) {
        notes = writer.write(output.temporaryPath(), true, progress);
    } else {
        // The copy goes through the levels of the whole image, so that has to be there first.
        const std::string whole = output.temporaryPath() + ".whole.tif";
        notes = writer.write(whole, false, [&](double part) { progress(part * kCopyPart); });
        writeCloudOptimized(whole, options, output,
                            [&](double part) { progress(kCopyPart + part * (1 - kCopyPart)); });
    }
    writeCategories(pixels.dataset(), output.temporaryPath(), output);
    return notes;
}

}  // namespace kestms
