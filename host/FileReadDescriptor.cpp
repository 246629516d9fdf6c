#include "pyxis/FileReadDescriptor.h"

#include "host/CodecRegistry.h"

namespace Pyxis {
namespace {

using PropertyPointer = std::unique_ptr<FormatCodecPropertyInterface>;

/// A copy of the property at the cursor if it has that name, else null. The property is returned to
/// the set in any case.
PropertyPointer copyIfNamed(FormatCodecPropertySetIterator& set, const StringBuffer& name) {
    PropertyPointer copy;
    const FormatCodecPropertyInterface* property = set.openProperty();
    try {
        if (property != nullptr && property->getName() == name) {
            copy.reset(property->clone());
        }
    } catch (...) {
        set.closeProperty();
        throw;
    }
    set.closeProperty();
    return copy;
}

}  // namespace

FormatDecodability FileReadDescriptor::findImageFileCodec(const FileSpecifier& file,
                                                          const ImageFormatCodec*& codec) {
    return CodecRegistry::instance().find(file, codec);
}

FileReadDescriptor::FileReadDescriptor(const FileSpecifier& file, const ImageFormatCodec* codec)
    : file_(file), codec_(codec) {}

FileReadDescriptor::~FileReadDescriptor() = default;

ReadImageFileInterface* FileReadDescriptor::image() {
    if (!image_ && codec_ != nullptr) {
        image_.reset(codec_->openImage(&file_));
    }
    return image_.get();
}

bool FileReadDescriptor::setFrame(int frame) {
    if (image() == nullptr || frame < 0 || frame >= image()->getNumFrames()) {
        return false;
    }
    frame_ = frame;
    return true;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): fixed by the interface.
FormatCodecPropertyInterface* FileReadDescriptor::getProperty(StringBuffer name) {
    if (image() == nullptr) {
        return nullptr;
    }
    const std::unique_ptr<ReadImageFileFrameInterface> frame(image()->openFrame(frame_));
    if (!frame) {
        return nullptr;
    }
    const std::unique_ptr<FormatCodecPropertySetIterator> properties(frame->getProperties());
    if (!properties) {
        return nullptr;
    }
    for (properties->start(); !properties->endOfList(); properties->step()) {
        if (PropertyPointer copy = copyIfNamed(*properties, name)) {
            return copy.release();
        }
    }
    return nullptr;
}

}  // namespace Pyxis
