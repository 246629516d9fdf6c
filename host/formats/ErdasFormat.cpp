#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

/// Pixels in a second, larger file are not read: the header may name any file for them.
Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    Expected<RasterFacts> facts = loadAllBands(file, handle);
    if (facts && !handle.opened(0).canReadLastPixel()) {
        return damaged("cut short, or its pixels are in a second file (.ige), which is not read");
    }
    return facts;
}

}  // namespace

const Format& erdasFormat() {
    static const Format format = {
        .name = "Erdas Imagine",
        .description = "Erdas Imagine image",
        .extensions = {"img"},
        .countsByName = false,
        .features = {FormatFeature::Compression, FormatFeature::ReducedResolutions,
                     FormatFeature::Palette, FormatFeature::Tiling},
        .driver = "HFA",
        .auxiliary = AuxiliaryRank::LastAndNoSystem,
        .recognise =
            [](std::string_view head, const std::string& /*path*/) {
                return head.starts_with("EHFA_HEADER_TAG");
            },
        .load = load,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
