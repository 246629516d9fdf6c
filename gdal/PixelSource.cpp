#include "gdal/PixelSource.h"

#include "host/gdal/ErrorCapture.h"
#include "host/gdal/SampleTypes.h"

namespace kestgdal {
namespace {

Pyxis::Size sizeOf(GDALRasterBand& band) {
    return {band.GetXSize(), band.GetYSize()};
}

/// The band itself, or one of its overviews; null when there is none.
GDALRasterBand* levelOf(GDALRasterBand* band, int level) {
    return level == 0 || band == nullptr ? band : band->GetOverview(level - 1);
}

class FrameSamples final : public PixelSource {
  public:
    FrameSamples(const kestms::OpenedSet& set, const kestms::Band& band, ComponentFiles& files)
        : set_(set), band_(band), files_(files) {}

    int numLevels() override {
        // A frame does not have the size of a level; GDAL does.
        if (frame().frameOp8() == 0) {
            return 0;
        }
        GDALRasterBand* component = files_.band(band_);
        return component != nullptr && component->GetOverviewCount() == frame().frameOp8()
                   ? component->GetOverviewCount()
                   : 0;
    }

    Pyxis::Size levelSize(int level) override {
        return level == 0 ? Pyxis::Size{band_.width, band_.height}
                          : sizeOf(*levelOf(files_.band(band_), level));
    }

    bool read(int level, const kestms::RasterWindow& window, const Buffer& buffer) override {
        Pyxis::PixelRequest request{window.x,
                                    window.y,
                                    window.width,
                                    window.height,
                                    buffer.width,
                                    buffer.height,
                                    {},
                                    0,
                                    0,
                                    0,
                                    nullptr,
                                    0};
        const GDALDataType own = sampleTypeOf(band_);
        if (buffer.type != own) {
            // Format and bits do not distinguish complex integers from complex floats.
            if (buffer.type == GDT_CInt32 || own == GDT_CInt32) {
                return false;
            }
            request.sampleFormat = Pyxis::sampleFormatOf(buffer.type);
            request.sampleBits = GDALGetDataTypeSizeBits(buffer.type);
        }
        request.pixelStride = static_cast<std::ptrdiff_t>(buffer.pixelSpace);
        request.lineStride = static_cast<std::ptrdiff_t>(buffer.lineSpace);
        request.buffer = buffer.data;
        request.bufferBytes = static_cast<std::size_t>((buffer.height - 1) * buffer.lineSpace +
                                                       (buffer.width - 1) * buffer.pixelSpace +
                                                       GDALGetDataTypeSizeBytes(buffer.type));
        return frame().frameOp13(level, &request);
    }

  private:
    Pyxis::ReadImageFileFrameInterface& frame() {
        if (!frame_) {
            frame_ = set_.openFrame(band_.frame);
        }
        return *frame_;
    }

    const kestms::OpenedSet& set_;
    const kestms::Band& band_;
    ComponentFiles& files_;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame_;
};

class ComponentMask final : public PixelSource {
  public:
    explicit ComponentMask(GDALRasterBand& component) : component_(component) {}

    int numLevels() override { return component_.GetOverviewCount(); }
    Pyxis::Size levelSize(int level) override { return sizeOf(*levelOf(&component_, level)); }
    bool read(int level, const kestms::RasterWindow& window, const Buffer& buffer) override {
        const Pyxis::ErrorCapture silent;
        GDALRasterBand* band = levelOf(&component_, level);
        return band != nullptr && band->GetMaskBand()->RasterIO(
                                      GF_Read, window.x, window.y, window.width, window.height,
                                      buffer.data, buffer.width, buffer.height, buffer.type,
                                      buffer.pixelSpace, buffer.lineSpace, nullptr) == CE_None;
    }

  private:
    GDALRasterBand& component_;
};

}  // namespace

GDALDataType sampleTypeOf(const kestms::Band& band) {
    return Pyxis::sampleTypeOf(band.format, band.bits).value_or(GDT_Byte);
}

std::unique_ptr<PixelSource> samplesOf(const kestms::OpenedSet& set, const kestms::Band& band,
                                       ComponentFiles& files) {
    return std::make_unique<FrameSamples>(set, band, files);
}

std::unique_ptr<PixelSource> maskOf(const kestms::Band& band, ComponentFiles& files) {
    GDALRasterBand* component = files.band(band);
    return component != nullptr && (component->GetMaskFlags() & GMF_PER_DATASET) != 0
               ? std::make_unique<ComponentMask>(*component)
               : nullptr;
}

}  // namespace kestgdal
