#include "tool/raster/GeoTiffWriter.h"

#include <cpl_string.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <fstream>
#include <optional>

#include "host/gdal/ErrorCapture.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/StringLists.h"
#include "tool/raster/XmlText.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// What is read and written at once: whole tiles, and little enough memory for any sample type.
constexpr int kWindowSide = 1024;

/// Of a Cloud Optimized GeoTIFF, what the copy takes after the pixels have been read.
constexpr double kCopyPart = 0.5;

struct Window {
    int x;
    int y;
    int width;
    int height;
};

std::size_t area(const Window& window) {
    return static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height);
}

template <typename Visit>
void forEachWindow(const GDALDataset& dataset, Visit visit) {
    auto& raster = const_cast<GDALDataset&>(dataset);
    const int width = raster.GetRasterXSize();
    const int height = raster.GetRasterYSize();
    for (int y = 0; y < height; y += kWindowSide) {
        for (int x = 0; x < width; x += kWindowSide) {
            visit(
                Window{x, y, std::min(kWindowSide, width - x), std::min(kWindowSide, height - y)});
        }
    }
}

bool readWindow(GDALRasterBand& band, const Window& window, GDALDataType type, void* samples) {
    return band.RasterIO(GF_Read, window.x, window.y, window.width, window.height, samples,
                         window.width, window.height, type, 0, 0, nullptr) == CE_None;
}

bool writeWindow(GDALRasterBand& band, const Window& window, GDALDataType type, void* samples) {
    return band.RasterIO(GF_Write, window.x, window.y, window.width, window.height, samples,
                         window.width, window.height, type, 0, 0, nullptr) == CE_None;
}

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

/// The differences between neighbours compress better than the samples.
const char* predictorFor(GDALDataType type, const std::string& compression) {
    constexpr int kLargestInteger = 32;
    if (compression == "NONE" || GDALDataTypeIsComplex(type) != FALSE) {
        return "1";
    }
    if (GDALDataTypeIsFloating(type) != FALSE) {
        return "3";
    }
    return GDALGetDataTypeSizeBits(type) <= kLargestInteger ? "2" : "1";
}

/// Writes one file: the bands of a virtual raster, and one mask for all where they need it.
class Writer {
  public:
    Writer(const OutputRaster& raster, const VirtualRaster& pixels, const GeoTiffOptions& options,
           const OutputFile& output)
        : raster_(raster),
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

    std::vector<std::string> write(const std::string& path, bool isWhole,
                                   const ProgressFunction& progress) {
        const Pyxis::ErrorCapture errors;
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        to_.reset(driver->Create(path.c_str(), from_.GetRasterXSize(), from_.GetRasterYSize(),
                                 from_.GetRasterCount(), type_, creationOptions(isWhole).List()));
        if (to_) {
            describe();
            copyPixels(progress);
            copyMask();
        }
        // A full disk may show only when the last tiles are written.
        to_.reset();
        if (!errors.message().empty()) {
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

    [[noreturn]] void failToRead(GDALRasterBand& band) const {
        throw Failure(ExitCode::CannotRead, pathOf(band), "its pixels cannot be read");
    }

    CPLStringList creationOptions(bool withUsers) {
        CPLStringList options;
        options.SetNameValue("TILED", "YES");
        options.SetNameValue("COMPRESS", options_.compression.c_str());
        options.SetNameValue("PREDICTOR", predictorFor(type_, options_.compression));
        options.SetNameValue("INTERLEAVE", "BAND");
        options.SetNameValue("BIGTIFF", "IF_SAFER");
        options.SetNameValue("NUM_THREADS", "ALL_CPUS");
        // Colours are said band by band, not by the file's colour model.
        options.SetNameValue("PHOTOMETRIC", "MINISBLACK");
        options.SetNameValue("ALPHA", "NO");
        if (hasSignedBytes(first())) {
            options.SetNameValue("PIXELTYPE", "SIGNEDBYTE");
        }
        for (const std::string& option :
             withUsers ? options_.creationOptions : std::vector<std::string>()) {
            const std::size_t mark = option.find('=');
            const std::string name = option.substr(0, mark);
            if (EQUAL(name.c_str(), "COMPRESS")) {
                options.SetNameValue("PREDICTOR", nullptr);  // not every method has one
            }
            options.SetNameValue(name.c_str(), option.substr(mark + 1).c_str());
        }
        return options;
    }

    void describe() {
        std::array<double, 6> transform{};
        from_.GetGeoTransform(transform.data());
        to_->SetGeoTransform(transform.data());
        to_->SetSpatialRef(from_.GetSpatialRef());
        to_->SetMetadata(from_.GetMetadata());
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
        const CPLStringList domains(band.GetMetadataDomainList());
        for (const std::string& domain : listItems(domains.List())) {
            if (domain != "IMAGE_STRUCTURE") {
                copy.SetMetadata(band.GetMetadata(domain.c_str()), domain.c_str());
            }
        }
        if (band.GetColorTable() != nullptr) {
            notes_.push_back(
                std::string(band.GetDescription()) +
                ": without its colour table, which a file of several bands cannot have");
        }
    }

    void copyPixels(const ProgressFunction& progress) {
        const double count = from_.GetRasterCount();
        std::vector<std::byte> samples(static_cast<std::size_t>(kWindowSide) * kWindowSide *
                                       static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type_)));
        for (GDALRasterBand* band : from_.GetBands()) {
            forEachWindow(from_, [&](const Window& window) {
                const Pyxis::ErrorCapture errors;
                if (!readWindow(*band, window, type_, samples.data())) {
                    failToRead(*band);
                }
                if (!writeWindow(target(band->GetBand()), window, type_, samples.data())) {
                    output_.fail(errors.message());
                }
                progress(
                    (band->GetBand() - 1 + static_cast<double>(window.y) / from_.GetRasterYSize()) /
                    count);
            });
        }
    }

    /// A GeoTIFF has one no-data value and one mask. The mask shows the pixels that all bands have.
    void copyMask() {
        if (sharesNoData_ && !hasMasks_) {
            return;
        }
        notes_.push_back(std::string(sharesNoData_ ? "the bands have masks"
                                                   : "the bands have different no-data values") +
                         ": one mask shows where all of them have data");
        if (to_->CreateMaskBand(GMF_PER_DATASET) != CE_None) {
            return;
        }
        std::vector<std::uint8_t> mask;
        std::vector<std::uint8_t> own;
        forEachWindow(from_, [&](const Window& window) {
            const Pyxis::ErrorCapture errors;
            mask.assign(area(window), 255);
            own.resize(area(window));
            for (GDALRasterBand* band : from_.GetBands()) {
                if (!readWindow(*band->GetMaskBand(), window, GDT_Byte, own.data())) {
                    failToRead(*band);
                }
                std::transform(mask.begin(), mask.end(), own.begin(), mask.begin(),
                               [](std::uint8_t a, std::uint8_t b) { return std::min(a, b); });
            }
            if (!writeWindow(*target(1).GetMaskBand(), window, GDT_Byte, mask.data())) {
                output_.fail(errors.message());
            }
        });
    }

    const OutputRaster& raster_;
    GDALDataset& from_;
    const GeoTiffOptions& options_;
    const OutputFile& output_;
    GDALDataType type_;
    GDALDatasetUniquePtr to_;
    bool sharesNoData_ = true;
    bool hasMasks_ = false;
    std::vector<std::string> notes_;
};

/// Takes a function that throws through GDAL, which knows no exceptions.
struct Relay {
    const ProgressFunction& progress;
    std::exception_ptr thrown;

    static int CPL_STDCALL call(double part, const char* /*message*/, void* self) {
        auto& relay = *static_cast<Relay*>(self);
        try {
            relay.progress(part);
        } catch (...) {
            relay.thrown = std::current_exception();
        }
        return relay.thrown ? FALSE : TRUE;
    }
};

void writeCloudOptimized(const std::string& from, const GeoTiffOptions& settings,
                         const OutputFile& output, const ProgressFunction& progress) {
    const Pyxis::ErrorCapture errors;
    CPLStringList options;
    options.SetNameValue("COMPRESS", settings.compression.c_str());
    options.SetNameValue("PREDICTOR", settings.compression == "NONE" ? "NO" : "YES");
    options.SetNameValue("BIGTIFF", "IF_SAFER");
    options.SetNameValue("NUM_THREADS", "ALL_CPUS");
    for (const std::string& option : settings.creationOptions) {
        const std::size_t mark = option.find('=');
        options.SetNameValue(option.substr(0, mark).c_str(), option.substr(mark + 1).c_str());
    }
    Relay relay{progress, nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("COG");
    const GDALDatasetUniquePtr source(GDALDataset::Open(from.c_str(), GDAL_OF_RASTER));
    if (driver == nullptr || !source) {
        output.fail(driver == nullptr ? "this GDAL writes no Cloud Optimized GeoTIFF"
                                      : errors.message());
    }
    GDALDatasetUniquePtr copy(driver->CreateCopy(output.temporaryPath().c_str(), source.get(),
                                                 FALSE, options.List(), Relay::call, &relay));
    const bool complete = copy != nullptr;
    copy.reset();
    if (relay.thrown) {
        std::rethrow_exception(relay.thrown);
    }
    if (!complete || !errors.message().empty()) {
        output.fail(errors.message());
    }
}

void checkCreationOptions(const GeoTiffOptions& options) {
    const char* name = options.cloudOptimized ? "COG" : "GTiff";
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(name);
    for (const std::string& option : options.creationOptions) {
        CPLStringList list;
        list.AddString(option.c_str());
        const Pyxis::ErrorCapture silence;
        if (option.find('=') == std::string::npos ||
            GDALValidateCreationOptions(driver, list.List()) == FALSE) {
            throw Failure(ExitCode::Usage, "--co " + option,
                          std::string("no creation option of GDAL's driver ") + name);
        }
    }
}

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
