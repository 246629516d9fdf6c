#include <string>
#include <utility>

#include "host/formats/Formats.h"
#include "host/formats/FrameProperties.h"
#include "host/formats/GeoCorrelation.h"
#include "host/formats/NitfSubheader.h"

namespace Pyxis {
namespace {

/// Each image segment opens the file once more, so their number is limited.
constexpr int kMaxSegments = 64;

bool recognise(std::string_view head, const std::string& /*path*/) {
    return head.starts_with("NITF") || head.starts_with("NSIF");
}

/// Adds the bands of an image segment with their letters; a band without one has an empty text.
void addSegment(RasterFacts& facts, const Dataset& dataset, bool version20) {
    const std::vector<std::string> letters =
        bandRepresentations(dataset.bytesOfItem("NITFImageSubheader", "NITF_METADATA"), version20);
    std::size_t band = 0;
    for (FrameFacts& frame : dataset.frames()) {
        if (band < letters.size()) {
            frame.ownText = letters[band++];
        }
        facts.frames.push_back(std::move(frame));
    }
}

/// Whether a segment whose last bytes seem to be missing can be read to its end. The decoders of
/// compressed segments invent missing pixels.
bool isWhole(const Dataset& dataset) {
    const std::string compression = dataset.item("NITF_IC").value_or("");
    return (compression == "NC" || compression == "NM") && dataset.canReadLastPixel();
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    const Expected<const Dataset*> first = handle.open();
    if (!first) {
        return first.refusal();
    }
    const bool mayBeCut = endOfImages(file.head.bytes) > file.head.state.size;
    const bool version20 = isVersion20((*first)->item("NITF_FHDR").value_or(""));
    const int segments = (*first)->numItems("SUBDATASETS") / 2;  // a name and a description each
    RasterFacts facts;
    if (segments < 2) {
        if (mayBeCut && !isWhole(**first)) {
            return damaged("the file is cut short");
        }
        addSegment(facts, **first, version20);
        if (!(*first)->transform()) {
            placeByLastSideFile(facts, file);
        }
        return facts;
    }
    if (segments > kMaxSegments) {
        return Refusal{Refusal::Kind::Unsafe,
                       "holds more than " + std::to_string(kMaxSegments) + " image segments"};
    }
    for (int i = 0; i < segments; ++i) {
        const auto segment = handle.openPart("NITF_IM:" + std::to_string(i) + ":");
        if (!segment) {
            continue;
        }
        if (mayBeCut && !isWhole(**segment)) {
            return damaged("the file is cut short");
        }
        addSegment(facts, **segment, version20);
    }
    return facts;
}

constexpr const char* kLetter = "Band Representation";

void describe(RasterFile& file, int frame, FrameProperties& properties) {
    properties.append(correlationOf(file.place(frame)).get());
    const TextProperty letter(kLetter, "What the band shows, as a code letter",
                              file.frame(frame).ownText);
    properties.append(&letter);
}

}  // namespace

const Format& nitfFormat() {
    static const Format format = {
        .name = "NITF",
        .description = "National Imagery Transmission Format and NATO Secondary Imagery Format",
        .extensions = {"ntf", "nitf", "nsf"},
        .features = {FormatFeature::Compression, FormatFeature::ReducedResolutions,
                     FormatFeature::Palette, FormatFeature::Tiling},
        .interface = Format::Interface::Nitf,
        .ownProperty = kLetter,
        .ownPropertyNumber = 10,
        .driver = "NITF",
        .auxiliary = AuxiliaryRank::Last,
        .recognise = recognise,
        .load = load,
        .describe = describe,
    };
    return format;
}

}  // namespace Pyxis
