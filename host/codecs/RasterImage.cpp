#include "host/codecs/RasterImage.h"

#include <unordered_set>
#include <utility>

#include "host/Text.h"
#include "host/codecs/RasterFrame.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

/// All images. A caller may never delete an image, so this list is never destroyed.
struct LiveImages {
    std::mutex mutex;
    std::unordered_set<RasterImage*> images;

    static LiveImages& instance() {
        static auto* const live = new LiveImages;
        return *live;
    }
};

}  // namespace

RasterImage::RasterImage(const ImageFormatCodec& codec, const Format& format,
                         const FileSpecifier& file, RasterPointer opened)
    : codec_(&codec), format_(format), specifier_(file), opened_(std::move(opened)) {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    live.images.insert(this);
}

RasterImage::~RasterImage() {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    live.images.erase(this);
}

void RasterImage::closeAllOf(const ImageFormatCodec& codec) {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    for (RasterImage* image : live.images) {
        if (image->codec_ == &codec) {
            image->codec_ = nullptr;
            image->opened_.reset();
        }
    }
}

RasterPointer RasterImage::opened() const {
    const std::lock_guard<std::mutex> lock(LiveImages::instance().mutex);
    return opened_;
}

const ImageFormatCodec* RasterImage::getCodec() const {
    const std::lock_guard<std::mutex> lock(LiveImages::instance().mutex);
    return codec_;
}

const FileSpecifier& RasterImage::getFileSpecifier() const {
    return specifier_;
}

int RasterImage::getNumFiles() const {
    const RasterPointer file = opened();
    return file ? static_cast<int>(file->facts().otherFiles.size()) + 1 : 0;
}

FileSpecifier RasterImage::getFile(int index) const {
    const RasterPointer file = opened();
    if (!file || index < 0 || index >= RasterImage::getNumFiles()) {
        return {};
    }
    return answerOr(FileSpecifier(), [&] {
        return index == 0  // as this caller spelt it; the cached file may come from another caller
                   ? specifier_
                   : fileSpecifier(file->facts().otherFiles[static_cast<std::size_t>(index) - 1]);
    });
}

int RasterImage::getNumFrames() const {
    const RasterPointer file = opened();
    return file ? file->numFrames() : 0;
}

ReadImageFileFrameInterface* RasterImage::openFrame(int frameIndex) {
    RasterPointer file = opened();
    if (!file || frameIndex < 0 || frameIndex >= file->numFrames()) {
        return nullptr;
    }
    return makeOrNull<RasterFrame>(
        [&] { return new RasterFrame(std::move(file), format_, frameIndex); });
}

}  // namespace Pyxis
