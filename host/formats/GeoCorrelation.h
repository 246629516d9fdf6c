#pragma once

#include <memory>
#include <utility>

#include "host/Text.h"
#include "host/raster/GeoFacts.h"
#include "pyxis/FormatCodecGeoCorrelation.h"

namespace Pyxis {

/// The name and description of every geo-correlation here. Copies share their bytes.
struct GeoCorrelationTexts {
    StringBuffer name = toWideBuffer("Geo-correlation");
    StringBuffer description = toWideBuffer("Position of the raster in its coordinate system");

    /// Never destroyed: images may be used until the process ends.
    static const GeoCorrelationTexts& shared();
};

/// The common part of geo-correlations. `Base` is FormatCodecGeoCorrelation or GeoTiffCorrelation.
template <typename Base>
class GeoCorrelationBase : public Base {
  public:
    explicit GeoCorrelationBase(std::shared_ptr<const GeoFacts> facts) : facts_(std::move(facts)) {
        this->setIdentifier(FormatCodecPropertyInterface::PropertyIdentifier::GeoCorrelation);
        this->setDataType(FormatCodecPropertyInterface::PropertyDataType::GeoCorrelation);
        this->setLevel(FormatCodecPropertyInterface::PropertyLevel::Frame);
        this->nameText() = GeoCorrelationTexts::shared().name;
        this->descriptionText() = GeoCorrelationTexts::shared().description;
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
class OriginCorrelation final : public GeoCorrelationBase<FormatCodecGeoCorrelation> {
  public:
    using GeoCorrelationBase::GeoCorrelationBase;
    OriginCorrelation* clone() const override;
};

/// With the exact corners of the geotransform, shear included.
class CornerCorrelation final : public GeoCorrelationBase<GeoTiffCorrelation> {
  public:
    using GeoCorrelationBase::GeoCorrelationBase;
    CornerCorrelation* clone() const override;
    Point2d getUpperLeft() const override { return facts().at(0, 0); }
    Point2d getUpperRight() const override { return facts().at(facts().width, 0); }
    Point2d getLowerLeft() const override { return facts().at(0, facts().height); }
    Point2d getLowerRight() const override { return facts().at(facts().width, facts().height); }
};

/// The correlation for formats without a fixed class: the one with corners only if the other cannot
/// express them. Null for null facts.
std::unique_ptr<FormatCodecGeoCorrelation> correlationOf(std::shared_ptr<const GeoFacts> facts);

}  // namespace Pyxis
