#include <cpl_string.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/formats/GdalFormat.h"
#include "host/formats/NitfSubheader.h"
#include "host/gdal/GdalProperties.h"
#include "host/gdal/OpenedFile.h"
#include "host/gdal/PixelWindow.h"

namespace Pyxis {
namespace {

/// Each image segment keeps the file open once more, so there is a limit to how many are shown.
constexpr int kMaxSegments = 64;

/// The image subheader that a dataset was opened from, which GDAL hands out as its length and its
/// bytes in base 64.
std::string imageSubheader(GDALDataset& dataset) {
    const char* item = dataset.GetMetadataItem("NITFImageSubheader", "NITF_METADATA");
    const char* encoded = item != nullptr ? std::strchr(item, ' ') : nullptr;
    if (encoded == nullptr) {
        return {};
    }
    std::string bytes = encoded + 1;
    const int length = CPLBase64DecodeInPlace(reinterpret_cast<GByte*>(bytes.data()));
    bytes.resize(static_cast<std::size_t>(std::max(length, 0)));
    return bytes;
}

/// Adds the bands of an image segment with their letters; a band without one has an empty text.
void addSegment(OpenedFile& file, GDALDataset& dataset, bool version20) {
    file.addBandsOf(dataset, bandRepresentations(imageSubheader(dataset), version20));
}

/// Whether a segment whose last bytes seem to be missing can be read to its end. The decoders of
/// compressed segments make up what is missing.
bool isWhole(GDALDataset& dataset) {
    const char* item = dataset.GetMetadataItem("NITF_IC");
    const std::string_view compression = item != nullptr ? item : "";
    return (compression == "NC" || compression == "NM") && canReadLastPixel(dataset);
}

class NitfFormat final : public GdalFormat {
  public:
    const FormatTexts& texts() const override {
        static const FormatTexts kTexts = {
            "NITF",
            "National Imagery Transmission Format and NATO Secondary Imagery Format",
            {"ntf", "nitf", "nsf"},
            {FormatFeature::Compression, FormatFeature::ReducedResolutions, FormatFeature::Palette,
             FormatFeature::Tiling},
            "Band Representation",
            10};
        return kTexts;
    }
    const char* driver() const override { return "NITF"; }
    bool matches(std::string_view head) const override {
        return head.substr(0, 4) == "NITF" || head.substr(0, 4) == "NSIF";
    }
    KnownFacts knownFacts(const std::string& /*path*/, const FileHead& head) const override {
        KnownFacts facts;
        facts.lastBlock = PixelBlock{0, endOfImages(head.bytes)};
        return facts;
    }
    std::string load(OpenedFile& file) const override;
    void describe(OpenedFile& file, int frame, GdalPropertySet& properties) const override;
};

std::string NitfFormat::load(OpenedFile& file) const {
    GDALDataset& first = file.mainDataset();
    const bool mayBeCut = !file.known().lastBlock->isWithin(file.size());
    const char* version = first.GetMetadataItem("NITF_FHDR");
    const bool version20 = version != nullptr && isVersion20(version);
    const int segments = CSLCount(first.GetMetadata("SUBDATASETS")) / 2;  // a name and a text each
    if (segments < 2) {
        addSegment(file, first, version20);
        return mayBeCut && !isWhole(first) ? "the file is cut short" : "";
    }
    if (segments > kMaxSegments) {
        return "holds more than " + std::to_string(kMaxSegments) + " image segments";
    }
    for (int i = 0; i < segments; ++i) {
        if (GDALDataset* segment = file.openPart("NITF_IM:" + std::to_string(i) + ":%s")) {
            if (mayBeCut && !isWhole(*segment)) {
                return "the file is cut short";
            }
            addSegment(file, *segment, version20);
        }
    }
    return {};
}

void NitfFormat::describe(OpenedFile& file, int frame, GdalPropertySet& properties) const {
    if (const auto facts = file.geoFacts(frame)) {
        properties.append(correlationOf(facts).get());
    }
    const GdalStringProperty letter(texts().ownProperty, "What the band shows, as a code letter",
                                    file.frame(frame).ownText);
    properties.append(&letter);
}

}  // namespace

const GdalFormat& nitfFormat() {
    static const NitfFormat format;
    return format;
}

}  // namespace Pyxis
