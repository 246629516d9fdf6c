#include "host/formats/Format.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/Text.h"
#include "host/file/AuxiliaryFile.h"
#include "host/file/PathName.h"
#include "host/file/WorldFile.h"
#include "host/formats/FrameProperties.h"
#include "host/formats/GeoCorrelation.h"
#include "host/raster/HandlePool.h"

namespace Pyxis {

Refusal damaged(std::string reason) {
    return {Refusal::Kind::Damaged, std::move(reason)};
}

Refusal notOf(const Format& format) {
    return {Refusal::Kind::OtherFormat, std::string("not a ") + format.name + " file"};
}

namespace {

void takeSystem(PlaceFacts& place, const SourceFile& file) {
    if (!file.auxiliary.system.empty() && file.rank != AuxiliaryRank::LastAndNoSystem) {
        place.systemText = file.auxiliary.system;
        place.systemKey = "in words: " + file.auxiliary.system;
        place.projectedSystem = 0;
    }
}

}  // namespace

void placeByFirstSideFile(RasterFacts& facts, const SourceFile& file) {
    if (file.rank == AuxiliaryRank::First) {
        takeSystem(facts.place, file);
        if (file.auxiliary.transform) {
            facts.place.transform = file.auxiliary.transform;
        }
    }
}

void placeByLastSideFile(RasterFacts& facts, const SourceFile& file) {
    takeSystem(facts.place, file);
    if (!facts.place.transform) {
        facts.place.transform = file.auxiliary.transform;
    }
}

void placeBySideFiles(RasterFacts& facts, const SourceFile& file, const Dataset& dataset,
                      DatasetHandle& handle) {
    placeByFirstSideFile(facts, file);
    if (facts.place.transform || dataset.transform()) {
        return;
    }
    // Looking for files that are not there costs more than the rest of opening.
    handle.watchWorldFiles();
    facts.place.transform = readWorldFile(handle.path());
    placeByLastSideFile(facts, file);
}

Expected<RasterFacts> loadAllBands(const SourceFile& file, DatasetHandle& handle) {
    const Expected<const Dataset*> dataset = handle.open();
    if (!dataset) {
        return dataset.refusal();
    }
    RasterFacts facts;
    facts.frames = (*dataset)->frames();
    placeBySideFiles(facts, file, **dataset, handle);
    return facts;
}

void describePlace(RasterFile& file, int frame, FrameProperties& properties) {
    properties.append(correlationOf(file.place(frame)).get());
}

namespace {

/// Why the claims of a file are out of proportion to its length. A few hundred bytes could
/// otherwise take seconds and gigabytes.
std::optional<Refusal> claimsTooMuch(const RasterFacts& facts, std::uint64_t fileSize) {
    constexpr std::uint64_t kFreeBytes = 64U << 20U;
    constexpr std::uint64_t kMostTimes = 64;
    /// Far more than imaging spectrometers have. Each costs kilobytes once it is a frame.
    constexpr std::size_t kMostBands = 4096;
    const std::string inFile = " in a file of " + std::to_string(fileSize);
    const std::string claim = "claims " + std::to_string(facts.frames.size()) + " bands";
    if (facts.frames.size() > fileSize) {
        return Refusal{Refusal::Kind::Unsafe, claim + inFile};
    }
    if (facts.frames.size() > kMostBands) {
        return Refusal{Refusal::Kind::Unsafe,
                       claim + "; at most " + std::to_string(kMostBands) + " are read"};
    }
    for (const FrameFacts& frame : facts.frames) {
        if (frame.bytesAtOnce > kFreeBytes && frame.bytesAtOnce / kMostTimes > fileSize) {
            return Refusal{
                Refusal::Kind::Unsafe,
                "claims a block of " + std::to_string(frame.bytesAtOnce) + " bytes" + inFile};
        }
    }
    return std::nullopt;
}

AuxiliaryPlace auxiliaryPlaceOf(const std::string& path) {
    const std::string text = readAuxiliaryFile(path);
    if (text.empty()) {
        return {};
    }
    const Expected<const Gdal*> gdal = Gdal::load();
    return gdal ? (*gdal)->auxiliaryPlaceIn(text) : AuxiliaryPlace();
}

Expected<RasterPointer> load(const Format& format, SourceFile& file) {
    auto handle = std::make_unique<DatasetHandle>(
        Opening{format.driver, file.absolutePath, format.view}, file.head.state);
    if (format.auxiliary != AuxiliaryRank::Ignored && !gdalOption("GDAL_GEOREF_SOURCES")) {
        file.rank = format.auxiliary;
        if (handle->mayHaveAuxiliaryFile()) {
            file.auxiliary = auxiliaryPlaceOf(file.absolutePath);
        }
    }
    Expected<RasterFacts> facts = format.load(file, *handle);
    if (!facts) {
        const Refusal& refusal = facts.refusal();
        return refusal.reason.empty() ? damaged(std::string("damaged ") + format.name + " file")
                                      : refusal;
    }
    if (facts->frames.empty()) {
        return damaged("holds no raster");
    }
    if (std::optional<Refusal> refusal = claimsTooMuch(*facts, file.head.state.size)) {
        return *refusal;
    }
    const bool hasKey = !facts->place.systemKey.empty();
    auto raster = std::make_shared<RasterFile>(std::move(*facts), std::move(handle));
    if (hasKey) {
        // Cheap while the file is open; later it may have to open again.
        raster->place(0);
    }
    raster->handle().loaded();
    return raster;
}

}  // namespace

bool hasExtensionOf(const Format& format, const std::string& path) {
    const std::string_view name = nameOf(path);
    const std::size_t dot = name.rfind('.');
    return dot != name.npos &&
           std::any_of(format.extensions.begin(), format.extensions.end(), [&](const char* one) {
               return equalIgnoringCase(name.substr(dot + 1), one);
           });
}

Expected<RasterPointer> loadRaster(const Format& format, SourceFile& file) {
    Expected<RasterPointer> raster = load(format, file);
    if (!raster && HandlePool::instance().makeRoom()) {
        return load(format, file);
    }
    return raster;
}

}  // namespace Pyxis
