#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/Text.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "tests/fakes/World.h"

namespace fakes {

class StringProperty : public Pyxis::FormatCodecStringProperty {
  public:
    StringProperty(std::string_view name, std::string_view value)
        : FormatCodecStringProperty(
              {static_cast<int>(value.size()), reinterpret_cast<const unsigned char*>(value.data()),
               Pyxis::CharacterType::Narrow},
              0) {
        nameText() = Pyxis::toWideBuffer(name);
    }
    StringProperty* clone() const override { return new StringProperty(*this); }
};

class PlainProperty : public Pyxis::FormatCodecPropertyInterface {
  public:
    explicit PlainProperty(std::string_view name) { nameText() = Pyxis::toWideBuffer(name); }
    PlainProperty* clone() const override { return new PlainProperty(*this); }
};

class FastBandFile : public FASTBandFilenameProperty {
  public:
    explicit FastBandFile(std::string_view fileName)
        : FASTBandFilenameProperty(Pyxis::toWideBuffer(fileName)) {}
    FastBandFile* clone() const override { return new FastBandFile(*this); }
};

struct GeoFacts {
    double originX = 0.0;
    double originY = 0.0;
    double pixelX = 1.0;
    double pixelY = 1.0;
    double scaleX = 1.0;
    double rotation = 0.0;
    std::int32_t width = 100;
    std::int32_t height = 100;
    int code = 0;  ///< 0: none
    std::string system = {};
    const World* world = nullptr;  ///< records each question, if there is one
};

/// Base is Pyxis::FormatCodecGeoCorrelation or GeoTiffCorrelation.
template <typename Base>
class GeoBase : public Base {
  public:
    explicit GeoBase(GeoFacts facts) : facts_(std::move(facts)) {}

    void getOrigin(Pyxis::Point3d& origin) const override {
        origin = {asked().originX, facts_.originY, 7.0};
    }
    void getPixelSize(Pyxis::Vector2d& size) const override {
        size = {asked().pixelX, facts_.pixelY};
    }
    void getRotation(double& radians) const override { radians = asked().rotation; }
    void getUnitScale(Pyxis::Vector2d& scale) const override { scale = {asked().scaleX, 1.0}; }
    void getCoordinateSystem(Pyxis::StringBuffer& text) const override {
        text = Pyxis::toWideBuffer(asked().system);
    }
    bool hasCoordinateSystemCode() const override { return asked().code != 0; }
    void getCoordinateSystemCode(int& code) const override { code = asked().code; }
    void getImageSize(std::int32_t& width, std::int32_t& height) const override {
        width = asked().width;
        height = facts_.height;
    }

  protected:
    const GeoFacts& asked() const {
        if (facts_.world != nullptr) {
            facts_.world->mayThrow("georeference");
        }
        return facts_;
    }

    GeoFacts facts_;
};

class Geo : public GeoBase<Pyxis::FormatCodecGeoCorrelation> {
  public:
    using GeoBase::GeoBase;
    Geo* clone() const override { return new Geo(*this); }
};

/// Its corners are those that are set here, whatever the facts.
class GeoTiff : public GeoBase<GeoTiffCorrelation> {
  public:
    using GeoBase::GeoBase;
    GeoTiff* clone() const override { return new GeoTiff(*this); }
    Pyxis::Point2d getUpperLeft() const override { return upperLeft; }
    Pyxis::Point2d getUpperRight() const override { return upperRight; }
    Pyxis::Point2d getLowerLeft() const override { return lowerLeft; }
    Pyxis::Point2d getLowerRight() const override { return lowerRight; }

    Pyxis::Point2d upperLeft, upperRight, lowerLeft, lowerRight;
};

using PropertyPointer = std::shared_ptr<const Pyxis::FormatCodecPropertyInterface>;

template <typename Property, typename... Arguments>
PropertyPointer property(Arguments&&... arguments) {
    return std::make_shared<Property>(std::forward<Arguments>(arguments)...);
}

}  // namespace fakes
