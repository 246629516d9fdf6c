#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {

/// Pixels in a second, larger file are not read: the header may name any file for them.
const Format& erdasFormat() {
    static const Format format = {
        .name = "Erdas Imagine",
        .description = "Erdas Imagine image",
        .extensions = {"img"},
        .isToldByName = false,
        .features = {FormatFeature::Compression, FormatFeature::ReducedResolutions,
                     FormatFeature::Palette, FormatFeature::Tiling},
        .driver = "HFA",
        .auxiliary = AuxiliaryRank::LastAndNoSystem,
        .recognise =
            [](std::string_view head, const std::string& /*path*/) {
                return head.starts_with("EHFA_HEADER_TAG");
            },
        .load = loadAllBands,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
