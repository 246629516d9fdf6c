#include "host/gdal/OpenedFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/cache/HandlePool.h"
#include "host/file/WorldFile.h"
#include "host/formats/GdalFormat.h"
#include "host/gdal/GdalOpen.h"
#include "host/gdal/Guarded.h"
#include "host/gdal/PixelWindow.h"

namespace Pyxis {
namespace {

std::vector<std::uint8_t> coloursOf(GDALRasterBand& band) {
    std::vector<std::uint8_t> colours;
    const GDALColorTable* table = band.GetColorTable();
    const auto byte = [](short value) {
        return static_cast<std::uint8_t>(std::clamp<short>(value, 0, 255));
    };
    for (int i = 0; table != nullptr && i < table->GetColorEntryCount(); ++i) {
        GDALColorEntry entry{};
        table->GetColorEntryAsRGB(i, &entry);
        colours.insert(colours.end(),
                       {byte(entry.c1), byte(entry.c2), byte(entry.c3), byte(entry.c4)});
    }
    return colours;
}

FrameFacts factsOf(GDALRasterBand& band, bool mayHaveColours) {
    FrameFacts facts;
    facts.band = band.GetBand();
    facts.width = band.GetXSize();
    facts.height = band.GetYSize();
    band.GetBlockSize(&facts.blockWidth, &facts.blockHeight);
    facts.type = band.GetRasterDataType();
    facts.format = sampleFormatOf(band);
    if (mayHaveColours) {
        facts.colours = coloursOf(band);
    }
    return facts;
}

bool isGeoreferenced(GDALDataset& dataset) {
    std::array<double, 6> transform{};
    return dataset.GetGeoTransform(transform.data()) == CE_None;
}

}  // namespace

OpenedFile::OpenedFile(const GdalFormat& format, std::string path, std::string absolutePath,
                       const FileHead& head)
    : format_(format),
      path_(std::move(path)),
      absolutePath_(std::move(absolutePath)),
      stamp_{head.state, {}},
      known_(format.knownFacts(absolutePath_, head)),
      files_{path_} {}

OpenedFile::~OpenedFile() {
    HandlePool::instance().forget(*this);
    if (isOpen()) {
        const ErrorCapture silent;
        datasets_.clear();
    }
}

std::shared_ptr<OpenedFile> OpenedFile::open(const GdalFormat& format, const std::string& path,
                                             std::string& why) {
    // An absolute path cannot read as one of the drivers' own names for parts of files.
    const std::string absolute = Pyxis::absolutePath(path);
    const std::optional<FileHead> head = readHead(absolute, why);
    if (!head) {
        return nullptr;
    }
    if (!format.matches(head->bytes)) {
        why = std::string("not a ") + format.texts().name + " file";
        return nullptr;
    }
    why = format.refuse(path, *head);
    if (!why.empty()) {
        return nullptr;
    }
    std::shared_ptr<OpenedFile> file(new OpenedFile(format, path, absolute, *head));
    why = file->load();
    return why.empty() ? file : nullptr;
}

/// Why the file cannot be read; empty when it can.
std::string OpenedFile::load() {
    const std::lock_guard<std::mutex> lock(mutex_);
    const ErrorCapture errors;
    if (known_.raster && known_.transform) {
        addPart("%s");  // opened when it is used
    } else if (openPart("%s") == nullptr) {
        return errors.message().empty() ? std::string("damaged ") + format_.texts().name + " file"
                                        : errors.message();
    } else if (format_.takesWorldFile() && !known_.transform && !isGeoreferenced(mainDataset())) {
        takeWorldFile();
    }
    std::string why = format_.load(*this);
    if (why.empty() && frames_.empty()) {
        why = "holds no raster";
    }
    if (why.empty() && !known_.systemKey.empty()) {
        // Cheap while the file is open; later it may have to open again.
        placeOf(frames_.front());
    }
    if (isOpen()) {
        HandlePool::instance().used(*this);
    }
    return why;
}

/// Only files without a place of their own have it looked for: that costs more than the rest of
/// opening.
void OpenedFile::takeWorldFile() {
    withWorldFile_ = true;
    stamp_ = stampOf(absolutePath_, true);
    known_.transform = readWorldFile(absolutePath_);
}

bool OpenedFile::hasChanged() const {
    return stampOf(absolutePath_, withWorldFile_) != stamp_;
}

std::string OpenedFile::nameOfPart(std::string name) const {
    return name.replace(name.find("%s"), 2, absolutePath_);
}

GDALDataset* OpenedFile::openPart(const std::string& name) {
    GDALDatasetUniquePtr dataset =
        openForReading(format_.driver(), nameOfPart(name), absolutePath_, known_.mayNameOverviews);
    if (!dataset) {
        return nullptr;
    }
    addPart(name);
    datasets_.push_back(std::move(dataset));
    return datasets_.back().get();
}

void OpenedFile::addPart(const std::string& name) {
    partNames_.push_back(name);
    geoFacts_.emplace_back();
}

void OpenedFile::addKnownRaster() {
    const KnownRaster& raster = known_.raster.value();
    FrameFacts facts;
    facts.band = 1;
    facts.width = raster.width;
    facts.height = raster.height;
    facts.blockWidth = raster.blockWidth;
    facts.blockHeight = raster.blockHeight;
    facts.type = sampleTypeOf(raster.format, raster.bits).value();
    facts.format = raster.format;
    frames_.push_back(std::move(facts));
}

void OpenedFile::addBandsOf(GDALDataset& dataset, const std::vector<std::string>& ownTexts) {
    const auto part = std::find_if(datasets_.begin(), datasets_.end(),
                                   [&dataset](const auto& own) { return own.get() == &dataset; });
    for (int i = 0; i < dataset.GetRasterCount(); ++i) {
        FrameFacts facts = factsOf(*dataset.GetRasterBand(i + 1), known_.mayHaveColours);
        facts.part = static_cast<std::size_t>(part - datasets_.begin());
        const auto text = static_cast<std::size_t>(i);
        facts.ownText = text < ownTexts.size() ? ownTexts[text] : std::string();
        frames_.push_back(std::move(facts));
    }
}

bool OpenedFile::closeIfIdle() {
    const std::unique_lock<std::mutex> lock(mutex_, std::try_to_lock);
    if (lock) {
        const ErrorCapture silent;
        datasets_.clear();
    }
    return lock.owns_lock();
}

/// False when the file has changed since it was first opened, so that what is known of it and its
/// pixels would not agree.
bool OpenedFile::openAgain() {
    if (!datasets_.empty()) {
        return true;
    }
    if (hasChanged()) {
        return false;
    }
    for (const std::string& name : partNames_) {
        datasets_.push_back(openForReading(format_.driver(), nameOfPart(name), absolutePath_,
                                           known_.mayNameOverviews));
        if (!datasets_.back()) {
            datasets_.clear();
            return false;
        }
    }
    return true;
}

GDALDataset* OpenedFile::dataset(std::size_t part) {
    if (!openAgain()) {
        return nullptr;
    }
    HandlePool::instance().used(*this);
    return datasets_[part].get();
}

std::shared_ptr<const GeoFacts> OpenedFile::placeOf(const FrameFacts& frame) {
    auto& known = geoFacts_[frame.part];
    if (known) {
        return *known;
    }
    std::shared_ptr<const GeoFacts> read =
        readGeoFacts(known_, frame.width, frame.height, [&] { return dataset(frame.part); });
    if (read || isOpen()) {  // a file that could not be opened may be another time
        known = read;
    }
    return read;
}

std::shared_ptr<const GeoFacts> OpenedFile::geoFacts(int index) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const ErrorCapture silent;
    return placeOf(frame(index));
}

OpenedFile::Use::Use(OpenedFile& file, int frame)
    : lock_(file.mutex_), band_(guarded<GDALRasterBand*>(nullptr, [&]() -> GDALRasterBand* {
          const FrameFacts& facts = file.frame(frame);
          GDALDataset* dataset = file.dataset(facts.part);
          return dataset != nullptr ? dataset->GetRasterBand(facts.band) : nullptr;
      })) {}

}  // namespace Pyxis
