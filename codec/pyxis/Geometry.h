#pragma once

#include <cstdint>

#include "pyxis/Export.h"

namespace Pyxis {

/// A point in world units.
struct Point2d {
    double x = 0.0;
    double y = 0.0;
};

/// A point in world units with a height.
struct Point3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A direction or a pair of factors.
class PYXIS_API Vector2d {
  public:
    Vector2d() = default;
    Vector2d(double xValue, double yValue) : x(xValue), y(yValue) {}
    Vector2d(const Vector2d&) = default;
    Vector2d& operator=(const Vector2d&) = default;
    virtual ~Vector2d();

    double x = 0.0;
    double y = 0.0;
};

/// Width and height in pixels.
struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

}  // namespace Pyxis
