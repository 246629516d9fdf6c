#include "host/codecs/RasterSource.h"

#include "host/CodecRegistry.h"
#include "host/Text.h"
#include "host/file/PathName.h"
#include "host/raster/RasterFile.h"

namespace Pyxis {

namespace {

/// The image's own files are in one directory.
std::vector<std::string> filesOf(const RasterFile& file) {
    if (file.handle().view() == View::Sources) {
        return {};
    }
    const std::string& path = file.handle().path();
    std::vector<std::string> files = {path};
    for (const std::string& other : file.facts().otherFiles) {
        files.push_back(besideFile(path, other));
    }
    // GDAL does not list every file of a FAST image.
    for (int i = 0; files.size() > 1 && i < file.numFrames(); ++i) {
        files.push_back(besideFile(path, file.frame(i).ownText));
    }
    return files;
}

}  // namespace

RasterSources::~RasterSources() = default;

std::optional<RasterSource> sourceOf(const RasterFile& file, int frame) {
    if (frame < 0 || frame >= file.numFrames()) {
        return std::nullopt;
    }
    const FrameFacts& facts = file.frame(frame);
    const DatasetHandle& handle = file.handle();
    return RasterSource{
        handle.prefix(facts.part),     facts.band,   facts.sampleType, handle.driver(), facts.label,
        handle.mayHaveAuxiliaryFile(), filesOf(file)};
}

std::optional<RasterSource> rasterSourceOf(const std::string& path, int frame) {
    const FileSpecifier file = fileSpecifier(path);
    const ImageFormatCodec* codec = nullptr;
    if (CodecRegistry::instance().find(file, codec) != FormatDecodability::Decodable) {
        return std::nullopt;
    }
    const auto* sources = dynamic_cast<const RasterSources*>(codec);
    return sources != nullptr ? sources->source(file, frame) : std::nullopt;
}

}  // namespace Pyxis
