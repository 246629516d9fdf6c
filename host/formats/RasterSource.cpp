#include "host/formats/RasterSource.h"

#include "host/cache/FileCache.h"
#include "host/gdal/GdalCodec.h"
#include "host/gdal/OpenedFile.h"

namespace Pyxis {
std::optional<RasterSource> rasterSourceOf(const FileSpecifier& file, int frame) {
    FileCache cache;
    std::string why;
    for (const GdalFormat* format : {&tiffFormat(), &nitfFormat(), &fastFormat()}) {
        const auto opened = openSpecifier(cache, *format, file, why);
        if (opened && frame >= 0 && frame < opened->numFrames()) {
            const std::string& name = opened->partName(frame);
            const FrameFacts& facts = opened->frame(frame);
            return RasterSource{name.substr(0, name.find("%s")), facts.band,
                                GDALGetDataTypeName(facts.type)};
        }
    }
    return std::nullopt;
}

}  // namespace Pyxis
