#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// Most pictures are no rasters of the world; one with a world file is.
Expected<RasterFacts> loadPlaced(const SourceFile& file, DatasetHandle& handle) {
    Expected<RasterFacts> facts = loadAllBands(file, handle);
    if (facts && !facts->place.transform) {
        return Refusal{Refusal::Kind::OtherFormat, "a picture without a world file"};
    }
    if (facts && !handle.opened(0).canReadLastPixel()) {
        return damaged("the file is cut short");
    }
    return facts;
}

}  // namespace

const Format& pngFormat() {
    static const Format format = {
        .name = "PNG",
        .description = "Portable Network Graphics with a world file",
        .extensions = {"png"},
        .features = {FormatFeature::Compression, FormatFeature::Palette},
        .driver = "PNG",
        .hasOverviews = false,
        .recognise =
            [](std::string_view head, const std::string& /*path*/) {
                return head.starts_with("\x89PNG\r\n\x1a\n"sv);
            },
        .load = loadPlaced,
        .describe = describePlace,
    };
    return format;
}

const Format& jpegFormat() {
    static const Format format = {
        .name = "JPEG",
        .description = "JPEG with a world file",
        .extensions = {"jpg", "jpeg"},
        .features = {FormatFeature::Compression},
        .driver = "JPEG",
        .hasOverviews = false,
        .recognise = [](std::string_view head,
                        const std::string& /*path*/) { return head.starts_with("\xff\xd8\xff"sv); },
        .load = loadPlaced,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
