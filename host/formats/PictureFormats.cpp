#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// A picture counts as a raster only if a side file has its georeference.
Expected<RasterFacts> loadPlaced(const SourceFile& file, DatasetHandle& handle) {
    Expected<RasterFacts> facts = loadAllBands(file, handle);
    if (facts && !facts->place.transform) {
        return Refusal{Refusal::Kind::OtherFormat, "a picture without a georeference beside it"};
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
        .description = "Portable Network Graphics placed by a file beside it",
        .extensions = {"png"},
        .countsByName = false,
        .features = {FormatFeature::Compression, FormatFeature::Palette},
        .driver = "PNG",
        .auxiliary = AuxiliaryRank::Last,
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
        .description = "JPEG placed by a file beside it",
        .extensions = {"jpg", "jpeg"},
        .countsByName = false,
        .features = {FormatFeature::Compression},
        .driver = "JPEG",
        .auxiliary = AuxiliaryRank::First,
        .hasOverviews = false,
        .recognise = [](std::string_view head,
                        const std::string& /*path*/) { return head.starts_with("\xff\xd8\xff"sv); },
        .load = loadPlaced,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
