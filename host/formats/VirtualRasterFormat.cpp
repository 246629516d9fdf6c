#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/file/PathPolicy.h"
#include "host/formats/Formats.h"

namespace Pyxis {
namespace {

bool recognise(std::string_view head, const std::string& /*path*/) {
    const std::size_t start = head.find_first_not_of(" \t\r\n");
    return start != head.npos && head[start] == '<' && head.find("<VRTDataset") != head.npos;
}

Expected<RasterFacts> load(const SourceFile& file, DatasetHandle& handle) {
    constexpr std::uint64_t kMostBytes = 16U << 20U;
    if (!allowsVirtualRasters()) {
        return Refusal{Refusal::Kind::Unsafe, std::string(kVirtualRasterNotAllowed)};
    }
    if (file.head.state.size > kMostBytes) {
        return damaged("a virtual raster of more than 16 MiB");
    }
    Expected<RasterFacts> facts = loadAllBands(file, handle);
    if (facts && !handle.opened(0).canReadLastPixel()) {
        return damaged("what it names cannot be read");
    }
    if (facts) {
        facts->otherFiles = handle.opened(0).files();
        std::erase(facts->otherFiles, file.absolutePath);
    }
    return facts;
}

}  // namespace

const Format& virtualRasterFormat() {
    static const Format format = {
        .name = "VRT",
        .description = "GDAL virtual raster, if the host allows it",
        .extensions = {"vrt"},
        .countsByName = false,
        .features = {},
        .driver = "VRT",
        .view = View::Sources,
        .mayBeKept = false,  // its sources may change
        .recognise = recognise,
        .load = load,
        .describe = describePlace,
    };
    return format;
}

}  // namespace Pyxis
