#include "reader/KestMultispectralReadFileFrame.h"

#include <utility>

#include "pyxis/NoThrow.h"
#include "reader/KestMultispectralReadFile.h"

namespace {

kest::BandFacts factsOf(const KestMultispectralReadFile& reader, int band,
                        const Pyxis::FileSpecifier& component, int frameNumber) {
    kest::BandFacts facts;
    reader.getReferenceName(facts.referenceName);
    reader.getBandName(band, facts.bandName);
    facts.component = component;
    facts.frameNumber = frameNumber;
    facts.indexInBucket = reader.getBandIndexInBucket(band);
    reader.getBandType(band, facts.bandType);
    reader.getBandAssignment(band, facts.bandAssignment);
    facts.bucketIndex = reader.getBandBucketIndex(band);
    facts.numBuckets = reader.getNumBuckets(band);
    reader.getBandBucketName(band, facts.bucketName);
    return facts;
}

}  // namespace

KestMultispectralReadFileFrame::KestMultispectralReadFileFrame(
    const Pyxis::FileSpecifier& component, int frameNumber, const Pyxis::ImageFormatCodec* codec,
    const KestMultispectralReadFile* reader, int frameIndex,
    std::shared_ptr<KestMultispectralPropertySetIterator> propertySet)
    : propertySet_(std::move(propertySet)),
      frameIndex_(frameIndex),
      facts_(factsOf(*reader, frameIndex, component, frameNumber)),
      componentFile_(codec->openImage(&facts_.component)) {
    if (componentFile_) {
        componentFrame_.reset(componentFile_->openFrame(frameNumber));
    }
    if (!componentFrame_) {
        throw 1;
    }
}

KestMultispectralReadFileFrame::~KestMultispectralReadFileFrame() = default;

int KestMultispectralReadFileFrame::getFrameIndex() const {
    return frameIndex_;
}

bool KestMultispectralReadFileFrame::frameOp1(int level) {
    return Pyxis::answerOr(false, [&] { return componentFrame_->frameOp1(level); });
}
void KestMultispectralReadFileFrame::frameOp3(std::int32_t* width, std::int32_t* height) {
    Pyxis::attempt([&] { componentFrame_->frameOp3(width, height); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp4() {
    return Pyxis::answerOr(0, [&] { return componentFrame_->frameOp4(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp5() {
    return Pyxis::answerOr(1, [&] { return componentFrame_->frameOp5(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp6() {
    return Pyxis::answerOr(0, [&] { return componentFrame_->frameOp6(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp7() {
    return Pyxis::answerOr(1, [&] { return componentFrame_->frameOp7(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp8() {
    return Pyxis::answerOr(0, [&] { return componentFrame_->frameOp8(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp9() {
    return Pyxis::answerOr(0, [&] { return componentFrame_->frameOp9(); });
}
std::int32_t KestMultispectralReadFileFrame::frameOp10() {
    return Pyxis::answerOr(0, [&] { return componentFrame_->frameOp10(); });
}
void KestMultispectralReadFileFrame::frameOp11(int /*channel*/, Pyxis::ChannelRange* range) {
    // Always the first channel (compatibility.md, 19).
    Pyxis::attempt([&] { componentFrame_->frameOp11(0, range); });
}
const Pyxis::ColourTable* KestMultispectralReadFileFrame::frameOp12() {
    return Pyxis::answerOr<const Pyxis::ColourTable*>(nullptr,
                                                      [&] { return componentFrame_->frameOp12(); });
}
bool KestMultispectralReadFileFrame::frameOp13(int level, Pyxis::PixelRequest* request) {
    return Pyxis::answerOr(false, [&] { return componentFrame_->frameOp13(level, request); });
}
void* KestMultispectralReadFileFrame::frameOp15(void* argument) {
    return Pyxis::answerOr<void*>(nullptr, [&] { return componentFrame_->frameOp15(argument); });
}
void* KestMultispectralReadFileFrame::frameOp16(int argument) {
    return Pyxis::answerOr<void*>(nullptr, [&] { return componentFrame_->frameOp16(argument); });
}

Pyxis::FormatCodecPropertySetIterator* KestMultispectralReadFileFrame::getProperties() {
    return Pyxis::makeOrNull<Pyxis::FormatCodecPropertySetIterator>([this] {
        return kest::buildFramePropertySet(componentFrame_.get(), *propertySet_, facts_).release();
    });
}
