#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// A file of boxes, or a bare codestream.
bool recognise(std::string_view head, const std::string& /*path*/) {
    return head.starts_with("\0\0\0\x0cjP  \r\n\x87\n"sv) || head.starts_with("\xff\x4f\xff\x51"sv);
}

}  // namespace

const Format& jpeg2000Format() {
    static const Format format = {
        .name = "JPEG 2000",
        .description = "JPEG 2000, with the georeference of its boxes or of a world file",
        .extensions = {"jp2", "j2k", "jpx", "j2c"},
        .features = {FormatFeature::Compression, FormatFeature::ReducedResolutions,
                     FormatFeature::Palette, FormatFeature::Tiling},
        .driver = "JP2OpenJPEG",
        .auxiliary = AuxiliaryRank::First,
        .recognise = recognise,
        .load = loadAllBands,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
