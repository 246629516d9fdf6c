#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "host/Text.h"
#include "host/file/PathName.h"
#include "host/formats/FastHeader.h"
#include "host/formats/FastSiblings.h"
#include "host/formats/Formats.h"
#include "host/formats/FrameProperties.h"
#include "host/formats/GeoCorrelation.h"

namespace Pyxis {
namespace {

/// The band files that GDAL opened, in band order, as paths beside the header.
std::vector<std::string> openedBandFiles(const Dataset& dataset, const std::string& header) {
    std::vector<std::string> bands = dataset.files();
    if (!bands.empty()) {
        bands.erase(bands.begin());  // the header
    }
    for (std::string& band : bands) {
        band = besideFile(header, band);
    }
    return bands;
}

/// A band file's name as in the header. GDAL also finds files whose names differ in case, and for
/// some satellites files that the header does not name.
std::string nameInHeader(std::string_view fileName, const std::vector<std::string>& names) {
    const auto found = std::find_if(names.begin(), names.end(), [fileName](const auto& name) {
        return equalIgnoringCase(name, fileName);
    });
    return found != names.end() ? *found : std::string(fileName);
}

bool endsBeforePixels(const std::string& bandFile, const FrameFacts& band) {
    struct stat status {};
    const std::uint64_t needed = static_cast<std::uint64_t>(band.width) *
                                 static_cast<std::uint64_t>(band.height) *
                                 static_cast<std::uint64_t>(band.bits / 8);
    return stat(bandFile.c_str(), &status) != 0 ||
           static_cast<std::uint64_t>(status.st_size) < needed;
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    const std::vector<std::string> names = fastBandFileNames(file.head.bytes);
    if (std::optional<Refusal> unsafe = whyNotSafeBeside(file.absolutePath, names)) {
        return *unsafe;
    }
    const Expected<const Dataset*> dataset = handle.open();
    if (!dataset) {
        return dataset.refusal();
    }
    RasterFacts facts;
    facts.frames = (*dataset)->frames();
    facts.otherFiles = openedBandFiles(**dataset, file.path);
    std::vector<std::string> namesOfBands;
    for (const std::string& bandFile : facts.otherFiles) {
        if (facts.frames.empty() || endsBeforePixels(bandFile, facts.frames.front())) {
            return damaged(std::string("shorter than its header says: ").append(nameOf(bandFile)));
        }
        namesOfBands.push_back(nameInHeader(nameOf(bandFile), names));
    }
    // GDAL opens seven bands but lists six.
    if (namesOfBands.size() < facts.frames.size() && !names.empty()) {
        namesOfBands.push_back(names.back());
    }
    for (std::size_t i = 0; i < std::min(facts.frames.size(), namesOfBands.size()); ++i) {
        facts.frames[i].ownText = namesOfBands[i];
    }
    return facts;
}

void describe(RasterFile& file, int frame, FrameProperties& properties) {
    properties.append(correlationOf(file.place(frame)).get());
    const BandFilenameProperty fileName(file.frame(frame).ownText);
    properties.append(&fileName);
}

}  // namespace

const Format& fastFormat() {
    static const Format format = {
        .name = "FAST",
        .description = "Header file that names one file for each band",
        .extensions = {"fst"},
        .features = {},
        .interface = Format::Interface::Fast,
        .ownProperty = "Band File Name",
        .driver = "FAST",
        .view = View::Directory,
        // An image has several files, and another may appear.
        .mayBeKept = false,
        // The format has none, and this driver would use a file of any format beside the header.
        .hasOverviews = false,
        .recognise = [](std::string_view head,
                        const std::string& /*path*/) { return looksLikeFastHeader(head); },
        .load = load,
        .describe = describe,
    };
    return format;
}

}  // namespace Pyxis
