#include "host/codecs/RasterSource.h"

#include "host/CodecRegistry.h"
#include "host/gdal/RasterFile.h"

namespace Pyxis {

RasterSources::~RasterSources() = default;

std::optional<RasterSource> sourceOf(const RasterFile& file, int frame) {
    if (frame < 0 || frame >= file.numFrames()) {
        return std::nullopt;
    }
    const FrameFacts& facts = file.frame(frame);
    const DatasetHandle& handle = file.handle();
    return RasterSource{handle.prefix(facts.part), facts.band, facts.sampleType, handle.driver()};
}

std::optional<RasterSource> rasterSourceOf(const FileSpecifier& file, int frame) {
    const ImageFormatCodec* codec = nullptr;
    if (CodecRegistry::instance().find(file, codec) != FormatDecodability::Decodable) {
        return std::nullopt;
    }
    const auto* sources = dynamic_cast<const RasterSources*>(codec);
    return sources != nullptr ? sources->source(file, frame) : std::nullopt;
}

}  // namespace Pyxis
