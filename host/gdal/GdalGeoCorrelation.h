#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include "host/Text.h"
#include "pyxis/FormatCodecGeoCorrelation.h"

class GDALDataset;

namespace Pyxis {

struct KnownFacts;

struct CoordinateSystem {
    StringBuffer text;  ///< wide: WKT2, on one line; empty when the file gives none
    int code = 0;       ///< EPSG code; 0 when there is none
};

/// Where a raster lies, as its file says.
struct GeoFacts {
    std::array<double, 6> transform{};  ///< GDAL's: x0, xColumn, xRow, y0, yColumn, yRow
    std::int32_t width = 0;
    std::int32_t height = 0;
    /// Never of null. Another thread may still be working it out.
    std::shared_future<std::shared_ptr<const CoordinateSystem>> system;

    /// World position of a place in the raster, counted in pixels from its first corner.
    Point2d at(double column, double row) const;
    const CoordinateSystem& coordinateSystem() const { return *system.get(); }
    /// Width and height of a pixel in world units, never negative.
    Vector2d pixelSize() const;
    /// Whether the raster shows the world mirrored, as one does whose lines run northward.
    bool mirrored() const;
    double rotation() const;
    /// Whether origin, pixel size and rotation tell the corners, as they do for an upright raster
    /// and a turned one with square pixels.
    bool isToldByRotation() const;
};

/// Opens the file of a raster where what is known does not do; null when it is gone.
using RasterOpener = std::function<GDALDataset*()>;

/// Null when the raster, of this size in pixels, has no usable geotransform (ground control points
/// alone do not tell where each corner lies), or its file is gone. Rasters with the same system key
/// have the same coordinate system, which is then worked out once.
std::shared_ptr<const GeoFacts> readGeoFacts(const KnownFacts& known, std::int32_t width,
                                             std::int32_t height, const RasterOpener& open);

/// The name and description of every geo-correlation here.
struct GeoCorrelationTexts {
    static constexpr const char* kName = "Geo-correlation";
    static constexpr const char* kDescription = "Position of the raster in its coordinate system";
};

/// What all geo-correlations answer. `Base` is FormatCodecGeoCorrelation or GeoTiffCorrelation.
template <typename Base>
class GdalGeoCorrelationBase : public Base {
  public:
    explicit GdalGeoCorrelationBase(std::shared_ptr<const GeoFacts> facts)
        : facts_(std::move(facts)) {
        this->setIdentifier(FormatCodecPropertyInterface::PropertyIdentifier::GeoCorrelation);
        this->setDataType(FormatCodecPropertyInterface::PropertyDataType::GeoCorrelation);
        this->setLevel(FormatCodecPropertyInterface::PropertyLevel::Frame);
        this->nameText() = toWideBuffer(GeoCorrelationTexts::kName);
        this->descriptionText() = toWideBuffer(GeoCorrelationTexts::kDescription);
    }

    void getOrigin(Point3d& origin) const override {
        const Point2d corner = facts_->at(0, facts_->height);
        origin = {corner.x, corner.y, 0.0};
    }
    void getPixelSize(Vector2d& size) const override { size = facts_->pixelSize(); }
    void getRotation(double& radians) const override { radians = facts_->rotation(); }
    /// Pixel sizes are in world units already; a mirrored raster grows downward from its origin.
    void getUnitScale(Vector2d& scale) const override {
        scale = Vector2d(1.0, facts_->mirrored() ? -1.0 : 1.0);
    }
    void getCoordinateSystem(StringBuffer& text) const override {
        text = facts_->coordinateSystem().text;
    }
    bool hasCoordinateSystemCode() const override { return facts_->coordinateSystem().code > 0; }
    void getCoordinateSystemCode(int& code) const override {
        if (facts_->coordinateSystem().code > 0) {
            code = facts_->coordinateSystem().code;
        }
    }
    void getImageSize(std::int32_t& width, std::int32_t& height) const override {
        width = facts_->width;
        height = facts_->height;
    }

  protected:
    const GeoFacts& facts() const { return *facts_; }

  private:
    std::shared_ptr<const GeoFacts> facts_;
};

/// For formats whose rasters are described by origin, pixel size and rotation.
class GdalGeoCorrelation final : public GdalGeoCorrelationBase<FormatCodecGeoCorrelation> {
  public:
    using GdalGeoCorrelationBase::GdalGeoCorrelationBase;
    GdalGeoCorrelation* clone() const override;
};

/// With the corners as the geotransform has them, so that shear shows.
class GdalGeoTiffCorrelation final : public GdalGeoCorrelationBase<GeoTiffCorrelation> {
  public:
    using GdalGeoCorrelationBase::GdalGeoCorrelationBase;
    GdalGeoTiffCorrelation* clone() const override;
    Point2d getUpperLeft() const override { return facts().at(0, 0); }
    Point2d getUpperRight() const override { return facts().at(facts().width, 0); }
    Point2d getLowerLeft() const override { return facts().at(0, facts().height); }
    Point2d getLowerRight() const override { return facts().at(facts().width, facts().height); }
};

/// The correlation of a format that has no class of its own for it: the one with the corners only
/// where the other cannot tell them.
std::unique_ptr<FormatCodecGeoCorrelation> correlationOf(std::shared_ptr<const GeoFacts> facts);

}  // namespace Pyxis
