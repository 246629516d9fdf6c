#include <algorithm>
#include <cstdint>
#include <string_view>

#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

/// A file of boxes, or a bare codestream.
bool recognise(std::string_view head, const std::string& /*path*/) {
    return head.starts_with("\0\0\0\x0cjP  \r\n\x87\n"sv) || head.starts_with("\xff\x4f\xff\x51"sv);
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes) {
        number = number << 8U | static_cast<unsigned char>(byte);
    }
    return number;
}

/// Whether one of the boxes that begin in the head ends beyond the file: most often that of the
/// pixels, when a download broke off.
bool isCutShort(const FileHead& head) {
    constexpr std::uint64_t kInNextField = 1;
    std::string_view rest = head.bytes;
    std::uint64_t left = head.state.size;
    while (rest.size() >= 16) {
        const std::uint64_t word = bigEndian(rest.substr(0, 4));
        const std::uint64_t size = word == kInNextField ? bigEndian(rest.substr(8, 8)) : word;
        if (size > left || size < 8) {  // 0: up to the end of the file
            return size > left;
        }
        rest.remove_prefix(std::min<std::uint64_t>(size, rest.size()));
        left -= size;
    }
    return false;
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    const bool hasBoxes = file.head.bytes.starts_with('\0');
    return hasBoxes && isCutShort(file.head) ? damaged("the file is cut short")
                                             : loadAllBands(file, handle);
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
        .load = load,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
