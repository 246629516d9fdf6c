#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/file/FileHead.h"
#include "host/file/PathName.h"
#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

/// The header file of a file of pixels; empty when there is none. "a.img" may have a.hdr or
/// a.img.hdr, the extension also in capitals.
std::string headerOf(const std::string& path) {
    constexpr std::uint64_t kMostBytes = 1U << 20U;
    const std::size_t dot = path.rfind('.');
    const bool hasExtension = dot != std::string::npos && path.find('/', dot) == std::string::npos;
    for (const std::string& stem : {hasExtension ? path.substr(0, dot) : path, path}) {
        for (const char* const extension : {".hdr", ".HDR", ".Hdr"}) {
            std::string name = stem + extension;
            const Expected<FileHead> head = readHead(name);
            if (name != path && head && head->bytes.starts_with("ENVI") &&
                head->state.size <= kMostBytes) {
                return name;
            }
        }
    }
    return {};
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    const std::string header = headerOf(file.absolutePath);
    handle.showToo(header);
    Expected<RasterFacts> facts = loadAllBands(file, handle);
    if (!facts) {
        return facts;
    }
    // GDAL invents missing pixels.
    const std::string offset = handle.opened(0).item("header_offset", "ENVI").value_or("0");
    std::uint64_t needed = 0;
    std::from_chars(offset.data(), offset.data() + offset.size(), needed);
    for (const FrameFacts& frame : facts->frames) {
        needed += static_cast<std::uint64_t>(frame.width) *
                  static_cast<std::uint64_t>(frame.height) *
                  static_cast<std::uint64_t>(frame.bits / 8);
    }
    if (needed > file.head.state.size) {
        return damaged("shorter than its header says");
    }
    facts->otherFiles = {besideFile(file.path, header)};
    return facts;
}

}  // namespace

const Format& enviFormat() {
    static const Format format = {
        .name = "ENVI",
        .description = "Pixels as they are, with an ENVI header beside them",
        .extensions = {"dat", "img", "bsq", "bil", "bip"},
        .countsByName = false,
        .features = {},
        .driver = "ENVI",
        .mayBeKept = false,  // the header may change
        .hasOverviews = false,
        .recognise = [](std::string_view /*head*/,
                        const std::string& path) { return !headerOf(path).empty(); },
        .load = load,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
