#include "host/gdal/GdalImage.h"

#include <unordered_set>
#include <utility>

#include "host/Text.h"
#include "host/gdal/GdalFrame.h"
#include "host/gdal/Guarded.h"

namespace Pyxis {
namespace {

/// The images that exist. A caller may leave an image undeleted for good, so this list is never
/// destroyed: it outlives every image.
struct LiveImages {
    std::mutex mutex;
    std::unordered_set<GdalImage*> images;

    static LiveImages& instance() {
        static auto* const live = new LiveImages;
        return *live;
    }
};

}  // namespace

GdalImage::GdalImage(const ImageFormatCodec& codec, const GdalFormat& format,
                     const FileSpecifier& file, std::shared_ptr<OpenedFile> opened)
    : codec_(&codec), format_(format), specifier_(file), opened_(std::move(opened)) {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    live.images.insert(this);
}

GdalImage::~GdalImage() {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    live.images.erase(this);
}

void GdalImage::closeAllOf(const ImageFormatCodec& codec) {
    LiveImages& live = LiveImages::instance();
    const std::lock_guard<std::mutex> lock(live.mutex);
    for (GdalImage* image : live.images) {
        if (image->codec_ == &codec) {
            image->codec_ = nullptr;
            image->opened_.reset();
        }
    }
}

std::shared_ptr<OpenedFile> GdalImage::opened() const {
    const std::lock_guard<std::mutex> lock(LiveImages::instance().mutex);
    return opened_;
}

const ImageFormatCodec* GdalImage::getCodec() const {
    const std::lock_guard<std::mutex> lock(LiveImages::instance().mutex);
    return codec_;
}

const FileSpecifier& GdalImage::getFileSpecifier() const {
    return specifier_;
}

int GdalImage::getNumFiles() const {
    const std::shared_ptr<OpenedFile> file = opened();
    return file ? static_cast<int>(file->files().size()) : 0;
}

FileSpecifier GdalImage::getFile(int index) const {
    const std::shared_ptr<OpenedFile> file = opened();
    if (!file || index < 0 || static_cast<std::size_t>(index) >= file->files().size()) {
        return {};
    }
    if (index == 0) {
        return specifier_;  // spelt as this caller did; the opened file may be another's
    }
    return fileSpecifier(file->files()[static_cast<std::size_t>(index)]);
}

int GdalImage::getNumFrames() const {
    const std::shared_ptr<OpenedFile> file = opened();
    return file ? file->numFrames() : 0;
}

ReadImageFileFrameInterface* GdalImage::openFrame(int frameIndex) {
    std::shared_ptr<OpenedFile> file = opened();
    if (!file || frameIndex < 0 || frameIndex >= file->numFrames()) {
        return nullptr;
    }
    return newOrNull<GdalFrame>(std::move(file), format_, frameIndex);
}

}  // namespace Pyxis
