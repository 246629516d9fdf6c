#include "host/codecs/GdalFrame.h"

#include <algorithm>
#include <utility>

#include "host/codecs/GdalFormat.h"
#include "host/codecs/GdalProperties.h"
#include "host/codecs/Guarded.h"
#include "host/codecs/PixelWindow.h"

namespace Pyxis {

GdalFrame::GdalFrame(std::shared_ptr<OpenedFile> file, const GdalFormat& format, int index)
    : file_(std::move(file)), format_(format), index_(index) {
    const OpenedFile::Use use = file_->use();
    readColours(file_->band(index_));
}

void GdalFrame::readColours(GDALRasterBand& band) {
    const GDALColorTable* table = band.GetColorTable();
    if (table == nullptr) {
        return;
    }
    const auto byte = [](short value) {
        return static_cast<std::uint8_t>(std::clamp<short>(value, 0, 255));
    };
    for (int i = 0; i < table->GetColorEntryCount(); ++i) {
        GDALColorEntry entry{};
        table->GetColorEntryAsRGB(i, &entry);
        colours_.insert(colours_.end(),
                        {byte(entry.c1), byte(entry.c2), byte(entry.c3), byte(entry.c4)});
    }
    colourTable_ = {table->GetColorEntryCount(), colours_.data()};
}

GDALRasterBand* GdalFrame::level(int number) {
    GDALRasterBand& band = file_->band(index_);
    if (number == 0) {
        return &band;
    }
    return number > 0 && number <= numOverviews(band) ? band.GetOverview(number - 1) : nullptr;
}

int GdalFrame::numOverviews(GDALRasterBand& band) const {
    return format_.hasOverviews() ? band.GetOverviewCount() : 0;
}

bool GdalFrame::frameOp1(int number) {
    const OpenedFile::Use use = file_->use();
    return level(number) != nullptr;
}

int GdalFrame::getFrameIndex() const {
    return index_;
}

void GdalFrame::frameOp3(std::int32_t* width, std::int32_t* height) {
    const OpenedFile::Use use = file_->use();
    if (width != nullptr) {
        *width = file_->band(index_).GetXSize();
    }
    if (height != nullptr) {
        *height = file_->band(index_).GetYSize();
    }
}

std::int32_t GdalFrame::frameOp4() {
    const PixelModel model = colours_.empty() ? PixelModel::SingleChannel : PixelModel::Palette;
    return static_cast<std::int32_t>(model);
}

std::int32_t GdalFrame::frameOp5() {
    return 1;
}

std::int32_t GdalFrame::frameOp6() {
    const OpenedFile::Use use = file_->use();
    return GDALGetDataTypeSizeBits(file_->band(index_).GetRasterDataType());
}

std::int32_t GdalFrame::frameOp7() {
    const OpenedFile::Use use = file_->use();
    return static_cast<std::int32_t>(sampleFormatOf(file_->band(index_)));
}

std::int32_t GdalFrame::frameOp8() {
    const OpenedFile::Use use = file_->use();
    return numOverviews(file_->band(index_));
}

std::int32_t GdalFrame::frameOp9() {
    const OpenedFile::Use use = file_->use();
    int width = 0;
    file_->band(index_).GetBlockSize(&width, nullptr);
    return width;
}

std::int32_t GdalFrame::frameOp10() {
    const OpenedFile::Use use = file_->use();
    int height = 0;
    file_->band(index_).GetBlockSize(nullptr, &height);
    return height;
}

void GdalFrame::frameOp11(int channel, ChannelRange* range) {
    if (channel != 0 || range == nullptr) {
        return;
    }
    const OpenedFile::Use use = file_->use();
    GDALRasterBand& band = file_->band(index_);
    int hasNoData = FALSE;
    range->minimum = band.GetMinimum(nullptr);
    range->maximum = band.GetMaximum(nullptr);
    range->noData = band.GetNoDataValue(&hasNoData);
    range->hasNoData = hasNoData != FALSE;
}

const ColourTable* GdalFrame::frameOp12() {
    return colours_.empty() ? nullptr : &colourTable_;
}

bool GdalFrame::frameOp13(int number, PixelRequest* request) {
    if (request == nullptr) {
        return false;
    }
    const OpenedFile::Use use = file_->use();
    GDALRasterBand* band = level(number);
    return guarded(false, [&] {
        return band != nullptr && readWindow(*band, *request, format_.hasOverviews());
    });
}

FormatCodecPropertySetIterator* GdalFrame::getProperties() {
    return guarded<FormatCodecPropertySetIterator*>(nullptr, [this] {
        auto properties = std::make_unique<GdalPropertySet>();
        const OpenedFile::Use use = file_->use();
        format_.describe(*file_, index_, *properties);
        return properties.release();
    });
}

void* GdalFrame::frameOp15(void* /*argument*/) {
    return nullptr;
}

void* GdalFrame::frameOp16(int /*argument*/) {
    return nullptr;
}

}  // namespace Pyxis
