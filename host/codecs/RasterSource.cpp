#include "host/codecs/RasterSource.h"

#include "host/Text.h"
#include "host/codecs/GdalCodec.h"

namespace Pyxis {
namespace {

std::shared_ptr<OpenedFile> openAny(const FileSpecifier& file) {
    std::string why;
    for (const GdalFormat* format : {&tiffFormat(), &nitfFormat(), &fastFormat()}) {
        if (std::shared_ptr<OpenedFile> opened = openSpecifier(*format, file, why)) {
            return opened;
        }
    }
    return nullptr;
}

}  // namespace

std::optional<RasterSource> rasterSourceOf(const FileSpecifier& file, int frame) {
    const std::shared_ptr<OpenedFile> opened = openAny(file);
    if (!opened || frame < 0 || frame >= opened->numFrames()) {
        return std::nullopt;
    }
    const OpenedFile::Use use = opened->use();
    const FrameSource& source = opened->frame(frame);
    const std::string name = source.dataset->GetDescription();
    const std::string mainName = opened->mainDataset().GetDescription();
    return RasterSource{
        name.ends_with(mainName) ? name.substr(0, name.size() - mainName.size()) : std::string(),
        source.band, GDALGetDataTypeName(opened->band(frame).GetRasterDataType())};
}

}  // namespace Pyxis
