#include "host/codecs/RasterFrame.h"

#include <utility>
#include <vector>

#include "host/formats/Format.h"
#include "host/formats/FrameProperties.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {

RasterFrame::RasterFrame(RasterPointer file, const Format& format, int index)
    : file_(std::move(file)), format_(format), index_(index) {
    const std::vector<std::uint8_t>& colours = facts().colours;
    colourTable_ = {static_cast<std::int32_t>(colours.size() / 4), colours.data()};
}

const Dataset* RasterFrame::datasetIn(DatasetHandle::Use& use) const {
    return use.dataset(facts().part);
}

bool RasterFrame::mayHaveLevel(int number) const {
    return number == 0 || format_.hasOverviews;
}

bool RasterFrame::frameOp1(int number) {
    return answerOr(false, [&] {
        DatasetHandle::Use use = file_->use();
        const Dataset* dataset = datasetIn(use);
        return dataset != nullptr && mayHaveLevel(number) &&
               dataset->hasLevel(facts().band, number);
    });
}

int RasterFrame::getFrameIndex() const {
    return index_;
}

void RasterFrame::frameOp3(std::int32_t* width, std::int32_t* height) {
    if (width != nullptr) {
        *width = facts().width;
    }
    if (height != nullptr) {
        *height = facts().height;
    }
}

std::int32_t RasterFrame::frameOp4() {
    // Sets refuse 32-bit single channels, so floating-point reflectance has its own model.
    const PixelModel model = !facts().colours.empty() ? PixelModel::Palette
                             : facts().format == SampleFormat::FloatingPoint
                                 ? PixelModel::Continuous
                                 : PixelModel::SingleChannel;
    return static_cast<std::int32_t>(model);
}

std::int32_t RasterFrame::frameOp5() {
    return 1;
}

std::int32_t RasterFrame::frameOp6() {
    return facts().bits;
}

std::int32_t RasterFrame::frameOp7() {
    return static_cast<std::int32_t>(facts().format);
}

std::int32_t RasterFrame::frameOp8() {
    return answerOr(0, [&] {
        DatasetHandle::Use use = file_->use();
        const Dataset* dataset = datasetIn(use);
        return dataset != nullptr && format_.hasOverviews ? dataset->numOverviews(facts().band) : 0;
    });
}

std::int32_t RasterFrame::frameOp9() {
    return facts().blockWidth;
}

std::int32_t RasterFrame::frameOp10() {
    return facts().blockHeight;
}

void RasterFrame::frameOp11(int channel, ChannelRange* range) {
    if (channel != 0 || range == nullptr) {
        return;
    }
    if (facts().range) {
        *range = *facts().range;
        return;
    }
    attempt([&] {
        DatasetHandle::Use use = file_->use();
        if (const Dataset* dataset = datasetIn(use)) {
            *range = dataset->range(facts().band);
        }
    });
}

const ColourTable* RasterFrame::frameOp12() {
    return facts().colours.empty() ? nullptr : &colourTable_;
}

bool RasterFrame::frameOp13(int number, PixelRequest* request) {
    return request != nullptr && answerOr(false, [&] {
               DatasetHandle::Use use = file_->use();
               const Dataset* dataset = datasetIn(use);
               return dataset != nullptr && mayHaveLevel(number) &&
                      dataset->read(facts().band, number, facts().format, *request,
                                    format_.hasOverviews);
           });
}

FormatCodecPropertySetIterator* RasterFrame::getProperties() {
    return answerOr<FormatCodecPropertySetIterator*>(nullptr, [this] {
        auto properties = std::make_unique<FrameProperties>();
        format_.describe(*file_, index_, *properties);
        return properties.release();
    });
}

void* RasterFrame::frameOp15(void* /*argument*/) {
    return nullptr;
}

void* RasterFrame::frameOp16(int /*argument*/) {
    return nullptr;
}

}  // namespace Pyxis
