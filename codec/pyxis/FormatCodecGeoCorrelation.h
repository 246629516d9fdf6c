#pragma once

#include <cstdint>

#include "pyxis/Export.h"
#include "pyxis/FormatCodecProperty.h"
#include "pyxis/Geometry.h"

namespace Pyxis {

/// The georeference of a raster. Raster corner (0, 0) is the lower-left one.
class PYXIS_API FormatCodecGeoCorrelation : public FormatCodecPropertyInterface {
  public:
    /// World position of the lower-left corner.
    virtual void getOrigin(Point3d& origin) const = 0;  // slot 10
    virtual void reserved11();
    /// Pixel width and height; multiplied by `getUnitScale` they give world units.
    virtual void getPixelSize(Vector2d& size) const = 0;  // slot 12
    virtual void reserved13();
    /// Rotation of the raster in radians, counter-clockwise.
    virtual void getRotation(double& radians) const = 0;  // slot 14
    virtual void reserved15();
    /// Factors from the units of `getPixelSize` to world units.
    virtual void getUnitScale(Vector2d& scale) const = 0;  // slot 16
    virtual void reserved17();
    virtual void reserved18();
    virtual void reserved19();
    virtual void reserved20();
    /// The coordinate system as text; WKT in this host.
    virtual void getCoordinateSystem(StringBuffer& text) const = 0;  // slot 21
    virtual void reserved22();
    virtual void reserved23();
    virtual void reserved24();
    virtual bool hasCoordinateSystemCode() const = 0;  // slot 25
    /// The EPSG code; unchanged when there is none.
    virtual void getCoordinateSystemCode(int& code) const = 0;  // slot 26
    virtual void reserved27();
    virtual void reserved28();
    virtual void reserved29();
    virtual void reserved30();
    /// Size of the raster in pixels.
    virtual void getImageSize(std::int32_t& width, std::int32_t& height) const = 0;  // slot 31
    virtual void reserved32();
    virtual void reserved33();
    virtual void reserved34();
    virtual void reserved35();
    virtual void reserved36();
    virtual void reserved37();
    virtual void reserved38();
    virtual void reserved39();
    virtual void reserved40();
    virtual void reserved41();
};

}  // namespace Pyxis

/// A geo-correlation that knows its four world corners exactly, shear included.
class PYXIS_API GeoTiffCorrelation : public Pyxis::FormatCodecGeoCorrelation {
  public:
    virtual Pyxis::Point2d getUpperLeft() const = 0;   // slot 42
    virtual Pyxis::Point2d getUpperRight() const = 0;  // slot 43
    virtual Pyxis::Point2d getLowerLeft() const = 0;   // slot 44
    virtual Pyxis::Point2d getLowerRight() const = 0;  // slot 45
    ~GeoTiffCorrelation() override;
};
