#pragma once

#include <limits>
#include <string>
#include <string_view>

#include "fuzz/Input.h"
#include "fuzz/Texts.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"

namespace fuzz {

/// A text property that may hold any bytes of any character type.
class AnyText : public Pyxis::FormatCodecStringProperty {
  public:
    AnyText(std::string_view name, const Pyxis::StringBuffer& value)
        : FormatCodecStringProperty(value, 0) {
        nameText() = Pyxis::toWideBuffer(name);
    }
    AnyText* clone() const override { return new AnyText(*this); }
};

class AnyBandFile : public FASTBandFilenameProperty {
  public:
    explicit AnyBandFile(const Pyxis::StringBuffer& name) : FASTBandFilenameProperty(name) {}
    AnyBandFile* clone() const override { return new AnyBandFile(*this); }
};

/// Component codecs of every kind, whose files answer what the input chooses. Without choices a
/// file is a good component.
class Host {
  public:
    explicit Host(Input& input) : input_(input) {}

    fakes::World world;

    /// A file that one of the codecs reads, or none.
    void add(const std::string& path) {
        const std::size_t reader = input_.below(6);
        fakes::FileFacts facts;
        facts.cannotOpen = input_.rarely();
        const std::size_t frames = input_.rarely() ? input_.below(5) : 1;
        for (std::size_t i = 0; i < frames; ++i) {
            facts.frames.push_back(frame(reader));
        }
        switch (reader) {
            case 0:
                other_.add(path, facts);
                break;
            case 1:
                tiff_.add(path, facts);
                break;
            case 2:
                quickBird_.add(path, facts);
                break;
            case 3:
                nitf_.add(path, facts);
                break;
            case 4:
                fast_.add(path, facts);
                break;
            default:
                break;
        }
    }

    /// From now on host calls fail or throw when the input chooses so.
    void letCallsFail() {
        world.fail = [this](std::string_view) {
            static constexpr fakes::Fault::Kind kFaults[] = {fakes::Fault::Fail,
                                                             fakes::Fault::Throw};
            return input_.rarely() ? fakes::Fault(input_.oneOf(kFaults)) : fakes::Fault(false);
        };
    }

  private:
    double number() {
        static constexpr double kNumbers[] = {1.0,
                                              0.0,
                                              2.0,
                                              -1.0,
                                              1.0 + 1e-5,
                                              1.0 + 2e-5,
                                              1e-5,
                                              0.5,
                                              1e300,
                                              std::numeric_limits<double>::infinity(),
                                              std::numeric_limits<double>::quiet_NaN(),
                                              std::numeric_limits<double>::denorm_min()};
        return input_.oneOf(kNumbers);
    }

    fakes::GeoFacts place() {
        static constexpr int kCodes[] = {32632, 0, -1, 4326};
        fakes::GeoFacts facts;
        facts.code = input_.oneOf(kCodes);
        facts.pixelX = facts.pixelY = number();
        if (input_.rarely()) {
            facts.pixelY = number();
            facts.scaleX = number();
            facts.rotation = number();
            facts.originX = 100 * (number() - 1);
            facts.width = input_.integer();
            facts.system = input_.bytes();
        }
        return facts;
    }

    fakes::PropertyPointer georeference() {
        if (!input_.flag()) {
            return fakes::property<fakes::Geo>(place());
        }
        const fakes::GeoFacts facts = place();
        fakes::GeoTiff geo(facts);
        const double right = facts.originX + facts.width * facts.pixelX;
        const double top = facts.originY + facts.height * facts.pixelY;
        geo.upperLeft = {facts.originX + number() - 1, top};
        geo.upperRight = {right, top};
        geo.lowerLeft = {facts.originX, facts.originY};
        geo.lowerRight = {right, facts.originY + number() - 1};
        return fakes::property<fakes::GeoTiff>(geo);
    }

    /// What band identification reads from the codec: the image description or the band letter.
    fakes::PropertyPointer description(const char* name) {
        static constexpr std::string_view kTexts[] = {"{\n  bandList = \n(\n1,\n2,\n3,\n4\n)}",
                                                      "{\n  bandList = \n(3, 2, 1)}",
                                                      "{\n  bandList = \n(4, 3, 2)}",
                                                      "{\n  bandList = \n(1)}",
                                                      "R",
                                                      "g",
                                                      "B",
                                                      "n",
                                                      "M"};
        const std::size_t choice = input_.below(std::size(kTexts) + 2);
        std::string text(choice < std::size(kTexts) ? kTexts[choice]
                                                    : std::string_view("{\n  bandList = \n"));
        text += choice < std::size(kTexts) ? std::string_view() : input_.bytes();
        if (choice > std::size(kTexts)) {
            text.erase(0, fakes::kBandListHeader.size());
        }
        return fakes::property<AnyText>(name, bufferFrom(text, input_));
    }

    fakes::FrameFacts frame(std::size_t reader) {
        static constexpr std::int32_t kModels[] = {0, 1, 2, -1};
        static constexpr std::int32_t kBits[] = {8, 16, 32, 11};
        static constexpr std::int32_t kFormats[] = {1, 4, 2};
        fakes::FrameFacts facts;
        if (input_.rarely()) {
            facts.noFrame = input_.flag();
            facts.noProperties = input_.flag();
            facts.model = input_.oneOf(kModels);
            facts.bits = input_.oneOf(kBits);
            facts.format = input_.oneOf(kFormats);
        }
        if (!input_.rarely()) {
            facts.properties.push_back(georeference());
        }
        if (reader == 4) {
            facts.properties.push_back(
                fakes::property<AnyBandFile>(bufferFrom(input_.bytes(), input_)));
        } else if (reader != 0) {
            facts.properties.push_back(description(reader == 3 ? "property 10" : "property 9"));
        }
        if (input_.rarely()) {
            facts.properties.push_back(fakes::property<fakes::PlainProperty>("property 9"));
            facts.properties.push_back(georeference());
        }
        return facts;
    }

    Input& input_;
    fakes::QBTiffCodec quickBird_{world};
    fakes::TiffCodec tiff_{world};
    fakes::NitfCodec nitf_{world};
    fakes::FastCodec fast_{world};
    fakes::Codec other_{world};
};

/// Loads the texts of one language, once for the life of the program.
inline void loadTexts() {
    static const fakes::TextsFrom texts(fakes::stringModule("en"));
}

}  // namespace fuzz
