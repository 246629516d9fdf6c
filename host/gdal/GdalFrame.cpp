#include "host/gdal/GdalFrame.h"

#include <utility>
#include <vector>

#include "host/formats/GdalFormat.h"
#include "host/gdal/GdalProperties.h"
#include "host/gdal/Guarded.h"
#include "host/gdal/PixelWindow.h"

namespace Pyxis {

GdalFrame::GdalFrame(std::shared_ptr<OpenedFile> file, const GdalFormat& format, int index)
    : file_(std::move(file)), format_(format), index_(index) {
    const std::vector<std::uint8_t>& colours = facts().colours;
    colourTable_ = {static_cast<std::int32_t>(colours.size() / 4), colours.data()};
}

GDALRasterBand* GdalFrame::level(GDALRasterBand* band, int number) const {
    if (number == 0) {
        return band;
    }
    return number > 0 && number <= numOverviews(band) ? band->GetOverview(number - 1) : nullptr;
}

int GdalFrame::numOverviews(GDALRasterBand* band) const {
    return band != nullptr && format_.hasOverviews() ? band->GetOverviewCount() : 0;
}

bool GdalFrame::frameOp1(int number) {
    const OpenedFile::Use use(*file_, index_);
    return level(use.band(), number) != nullptr;
}

int GdalFrame::getFrameIndex() const {
    return index_;
}

void GdalFrame::frameOp3(std::int32_t* width, std::int32_t* height) {
    if (width != nullptr) {
        *width = facts().width;
    }
    if (height != nullptr) {
        *height = facts().height;
    }
}

std::int32_t GdalFrame::frameOp4() {
    const PixelModel model =
        facts().colours.empty() ? PixelModel::SingleChannel : PixelModel::Palette;
    return static_cast<std::int32_t>(model);
}

std::int32_t GdalFrame::frameOp5() {
    return 1;
}

std::int32_t GdalFrame::frameOp6() {
    return GDALGetDataTypeSizeBits(facts().type);
}

std::int32_t GdalFrame::frameOp7() {
    return static_cast<std::int32_t>(facts().format);
}

std::int32_t GdalFrame::frameOp8() {
    const OpenedFile::Use use(*file_, index_);
    return numOverviews(use.band());
}

std::int32_t GdalFrame::frameOp9() {
    return facts().blockWidth;
}

std::int32_t GdalFrame::frameOp10() {
    return facts().blockHeight;
}

void GdalFrame::frameOp11(int channel, ChannelRange* range) {
    if (channel != 0 || range == nullptr) {
        return;
    }
    const OpenedFile::Use use(*file_, index_);
    GDALRasterBand* band = use.band();
    if (band == nullptr) {
        return;
    }
    int hasNoData = FALSE;
    range->minimum = band->GetMinimum(nullptr);
    range->maximum = band->GetMaximum(nullptr);
    range->noData = band->GetNoDataValue(&hasNoData);
    range->hasNoData = hasNoData != FALSE;
}

const ColourTable* GdalFrame::frameOp12() {
    return facts().colours.empty() ? nullptr : &colourTable_;
}

bool GdalFrame::frameOp13(int number, PixelRequest* request) {
    return request != nullptr && guarded(false, [&] {
               const OpenedFile::Use use(*file_, index_);
               GDALRasterBand* band = level(use.band(), number);
               return band != nullptr &&
                      readWindow(*band, facts().format, *request, format_.hasOverviews());
           });
}

FormatCodecPropertySetIterator* GdalFrame::getProperties() {
    return guarded<FormatCodecPropertySetIterator*>(nullptr, [this] {
        auto properties = std::make_unique<GdalPropertySet>();
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
