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

template <typename Answer, typename Ask>
Answer RasterFrame::answerOfDataset(Answer fallback, Ask ask) const {
    return answerOr(fallback, [&] {
        DatasetHandle::Use use = file_->use();
        const Dataset* dataset = use.dataset(facts().part);
        return dataset != nullptr ? ask(*dataset) : fallback;
    });
}

bool RasterFrame::mayHaveLevel(int number) const {
    return number == 0 || format_.hasOverviews;
}

bool RasterFrame::frameOp1(int number) {
    return answerOfDataset(false, [&](const Dataset& dataset) {
        return mayHaveLevel(number) && dataset.hasLevel(facts().band, number);
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
    return answerOfDataset(0, [&](const Dataset& dataset) {
        return format_.hasOverviews ? dataset.numOverviews(facts().band) : 0;
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
    *range = answerOfDataset(*range,
                             [&](const Dataset& dataset) { return dataset.range(facts().band); });
}

const ColourTable* RasterFrame::frameOp12() {
    return facts().colours.empty() ? nullptr : &colourTable_;
}

bool RasterFrame::frameOp13(int number, PixelRequest* request) {
    return request != nullptr && answerOfDataset(false, [&](const Dataset& dataset) {
               return mayHaveLevel(number) && dataset.read(facts().band, number, facts().format,
                                                           *request, format_.hasOverviews);
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
