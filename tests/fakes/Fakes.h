#pragma once

#include <functional>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/CodecRegistry.h"
#include "host/Text.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/FormatCodecPropertySetIterator.h"
#include "pyxis/ImageFormatCodec.h"

// In-memory fakes of the host's codecs, images, frames and properties. A FakeCodec reads the files
// that were added to it; all answers are plain data. One World counts and records all calls.

namespace fakes {

/// How a host call fails, if it does: with its usual failure, with another one, or with an
/// exception.
struct Fault {
    enum Kind { None, Fail, FailOtherwise, Throw } kind;
    Fault(Kind how) : kind(how) {}                    // NOLINT: made to be converted
    Fault(bool fails) : kind(fails ? Fail : None) {}  // NOLINT: made to be converted
    operator Kind() const { return kind; }
};

/// What happened, in order, and how many host objects are alive.
struct World {
    World() = default;
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    /// Closes the images that nobody deleted, as the host does.
    ~World() {
        while (!images.empty()) {
            delete images.back();
        }
    }

    std::vector<std::string> events;
    int misuse = 0;  ///< how often host objects were not returned in order
    std::vector<Pyxis::ReadImageFileInterface*> images;
    int alive = 0;
    /// Called at every host call that may fail, with its name; returns whether the call fails, as
    /// a bool or a Fault.
    std::function<Fault(std::string_view)> fail;
    /// Called at those that cannot report failure; returns whether the call throws.
    std::function<bool(std::string_view)> failing;

    Fault fails(std::string_view call) const {
        const Fault fault = fail ? fail(call) : Fault(Fault::None);
        if (fault == Fault::Throw) {
            throw 42;
        }
        return fault;
    }
    void mayThrow(std::string_view call) const {
        if (failing && failing(call)) {
            throw 42;
        }
    }
    /// Never throws: destructors report here too.
    void note(std::string_view event) {
        try {
            events.emplace_back(event);
        } catch (const std::bad_alloc&) {
            events.clear();
        }
    }
};

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

/// Part of a host object that tracks its lifetime, and whether it is destroyed before its parts.
class Lifetime {
  public:
    Lifetime(World& world, std::string_view ending,
             std::shared_ptr<int> whole = std::make_shared<int>(0))
        : world_(world), ending_(ending), whole_(std::move(whole)) {
        ++*whole_;
        ++world_.alive;
    }
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;
    ~Lifetime() {
        --*whole_;
        world_.misuse += *parts_ != 0 ? 1 : 0;
        --world_.alive;
        world_.note(ending_);
    }
    const std::shared_ptr<int>& parts() const { return parts_; }

  private:
    World& world_;
    std::string_view ending_;
    std::shared_ptr<int> whole_;
    std::shared_ptr<int> parts_ = std::make_shared<int>(0);
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

struct FrameFacts {
    std::int32_t model = 0;
    std::int32_t bits = 8;
    std::int32_t format = 1;
    bool noFrame = false;       ///< `openFrame` returns null
    bool noProperties = false;  ///< `getProperties` returns null
    std::vector<PropertyPointer> properties;
};

struct FileFacts {
    bool cannotOpen = false;  ///< `openImage` returns null
    std::vector<FrameFacts> frames;
};

class PropertySet : public Pyxis::FormatCodecPropertySetIterator {
  public:
    PropertySet(World& world, const std::vector<PropertyPointer>& properties,
                std::shared_ptr<int> frame)
        : world_(world), lifetime_(world, "delete properties", std::move(frame)) {
        for (const PropertyPointer& property : properties) {
            appendProperty(property.get());
        }
    }
    void start() override {
        world_.mayThrow("start");
        FormatCodecPropertySetIterator::start();
    }
    void step() override {
        world_.mayThrow("step");
        FormatCodecPropertySetIterator::step();
    }
    Pyxis::FormatCodecPropertyInterface* openProperty() override {
        if (world_.fails("openProperty")) {
            return nullptr;
        }
        auto* property = FormatCodecPropertySetIterator::openProperty();
        *lifetime_.parts() += property != nullptr ? 1 : 0;
        return property;
    }
    using FormatCodecPropertySetIterator::openProperty;
    void closeProperty() override {
        // One that could not be handed out may be closed as well.
        *lifetime_.parts() -= *lifetime_.parts() > 0 ? 1 : 0;
        world_.mayThrow("closeProperty");
    }

  private:
    World& world_;
    Lifetime lifetime_;
};

class Frame : public Pyxis::ReadImageFileFrameInterface {
  public:
    Frame(World& world, FrameFacts facts, int index, std::shared_ptr<int> image)
        : world_(world),
          facts_(std::move(facts)),
          index_(index),
          lifetime_(world, "delete frame", std::move(image)) {}
    bool frameOp1(int level) override { return level == 0 && !world_.fails("frameOp1"); }
    int getFrameIndex() const override { return index_; }
    void frameOp3(std::int32_t* width, std::int32_t* height) override {
        world_.mayThrow("frameOp3");
        *width = 30;
        *height = 31;
    }
    std::int32_t frameOp4() override { return told("frameOp4", facts_.model); }
    std::int32_t frameOp5() override { return told("frameOp5", 50); }
    std::int32_t frameOp6() override { return told("frameOp6", facts_.bits); }
    std::int32_t frameOp7() override { return told("frameOp7", facts_.format); }
    std::int32_t frameOp8() override { return told("frameOp8", 80); }
    std::int32_t frameOp9() override { return told("frameOp9", 90); }
    std::int32_t frameOp10() override { return told("frameOp10", 100); }
    void frameOp11(int channel, Pyxis::ChannelRange* range) override {
        world_.mayThrow("frameOp11");
        range->minimum = channel;
        range->maximum = 111.0;
    }
    const Pyxis::ColourTable* frameOp12() override {
        return world_.fails("frameOp12") ? nullptr : &colours_;
    }
    bool frameOp13(int level, Pyxis::PixelRequest* request) override {
        if (world_.fails("frameOp13")) {
            return false;
        }
        request->x = level;
        return true;
    }
    Pyxis::FormatCodecPropertySetIterator* getProperties() override {
        if (facts_.noProperties || world_.fails("getProperties")) {
            return nullptr;
        }
        return new PropertySet(world_, facts_.properties, lifetime_.parts());
    }
    void* frameOp15(void* argument) override {
        return world_.fails("frameOp15") ? nullptr : argument;
    }
    void* frameOp16(int argument) override {
        return argument == 16 && !world_.fails("frameOp16") ? this : nullptr;
    }

  private:
    std::int32_t told(std::string_view call, std::int32_t answer) const {
        world_.mayThrow(call);
        return answer;
    }

    World& world_;
    FrameFacts facts_;
    int index_;
    Lifetime lifetime_;
    Pyxis::ColourTable colours_;
};

class Image : public Pyxis::ReadImageFileInterface {
  public:
    Image(World& world, const Pyxis::ImageFormatCodec* codec, Pyxis::FileSpecifier file,
          FileFacts facts)
        : world_(world), codec_(codec), file_(std::move(file)), facts_(std::move(facts)) {
        world_.images.push_back(this);
    }
    ~Image() override { std::erase(world_.images, this); }
    const Pyxis::ImageFormatCodec* getCodec() const override { return codec_; }
    const Pyxis::FileSpecifier& getFileSpecifier() const override { return file_; }
    int getNumFiles() const override { return 1; }
    Pyxis::FileSpecifier getFile(int /*index*/) const override { return file_; }
    int getNumFrames() const override { return static_cast<int>(facts_.frames.size()); }
    Pyxis::ReadImageFileFrameInterface* openFrame(int index) override {
        if (index < 0 || index >= getNumFrames() ||
            facts_.frames[static_cast<std::size_t>(index)].noFrame || world_.fails("openFrame")) {
            return nullptr;
        }
        return new Frame(world_, facts_.frames[static_cast<std::size_t>(index)], index,
                         lifetime_.parts());
    }

  private:
    World& world_;
    const Pyxis::ImageFormatCodec* codec_;
    Pyxis::FileSpecifier file_;
    FileFacts facts_;
    Lifetime lifetime_{world_, "delete image"};
};

/// Reads the files added to it. Base is ImageFormatCodec or one of the component codecs.
template <typename Base = Pyxis::ImageFormatCodec>
class BasicCodec : public Base {
  public:
    /// Registers itself with the host for its lifetime.
    explicit BasicCodec(World& world) : world_(world), registration_(*this) {}

    void add(const std::string& path, FileFacts facts) { files_[path] = std::move(facts); }
    void add(const std::string& path, FrameFacts facts) {
        files_[path] = FileFacts{false, {std::move(facts)}};
    }

    void getLibVersionInfo(unsigned int&, unsigned int&, unsigned int&) const override {}
    void getApiVersionInfo(unsigned int&, unsigned int&) const override {}
    Pyxis::CodecCapability codecCapability() const override {
        return Pyxis::CodecCapability::ReadOnly;
    }
    bool isValidFileName(const Pyxis::FileSpecifier&) const override { return true; }
    Pyxis::FormatType getFormatDecodabilityType() const override { return {}; }
    Pyxis::FormatOrganization getFormatOrganization() const override { return {}; }
    Pyxis::FormatFrameType getFormatFrameType() const override { return {}; }
    bool isFormatFeature(Pyxis::FormatFeature) const override { return false; }
    bool isSupportedProperty(Pyxis::FormatCodecPropertyInterface::PropertyIdentifier,
                             Pyxis::StringBuffer*) const override {
        return false;
    }
    int getNumExtensions() const override { return 0; }
    void getExtensionText(int, Pyxis::StringBuffer&) const override {}
    void getFormatName(Pyxis::StringBuffer&) const override {}
    void getDescriptionText(Pyxis::StringBuffer&) const override {}
    void getCopyrightText(Pyxis::StringBuffer&) const override {}
    Pyxis::FormatDecodability isDecodableFile(const Pyxis::FileSpecifier& file,
                                              Pyxis::FindFileInterface*) const override {
        const bool known = file.type() == Pyxis::FileSpecifier::Type::PlainFile &&
                           files_.count(Pyxis::toUtf8(file.string())) != 0;
        const Fault fault = known ? world_.fails("isDecodableFile") : Fault(Fault::Fail);
        return fault == Fault::None   ? Pyxis::FormatDecodability::Decodable
               : fault == Fault::Fail ? Pyxis::FormatDecodability::NotThisFormat
                                      : Pyxis::FormatDecodability::UndecodableSet;
    }
    bool isEncodableImage(const Pyxis::DataModelAttributes&, Pyxis::Size) const override {
        return false;
    }
    Pyxis::ReadImageFileInterface* openImage(const Pyxis::FileSpecifier* file,
                                             Pyxis::FindFileInterface&) const override {
        return openImage(file);
    }
    Pyxis::ReadImageFileInterface* openImage(const Pyxis::FileSpecifier* file) const override {
        const std::string path = Pyxis::toUtf8(file->string());
        world_.note("open " + path);
        const auto found = files_.find(path);
        if (found == files_.end() || found->second.cannotOpen || world_.fails("openImage")) {
            return nullptr;
        }
        return new Image(world_, this, *file, found->second);
    }
    Pyxis::WriteImageFileInterface* writeImage() const override { return nullptr; }
    Pyxis::ReadImageFileInterface* cloneOpenImage(
        const Pyxis::ReadImageFileInterface*) const override {
        return nullptr;
    }

  protected:
    World& world_;

  private:
    std::map<std::string, FileFacts> files_;
    Pyxis::CodecRegistration registration_;
};

using Codec = BasicCodec<>;
using FastCodec = BasicCodec<FASTFormatCodec>;

/// A codec with a property-name query: property `number` is called "property <number>".
template <typename Base>
class NamingCodec : public BasicCodec<Base> {
  public:
    using BasicCodec<Base>::BasicCodec;
    void getPropertyName(int number, Pyxis::StringBuffer& name) const override {
        if (this->world_.fails("getPropertyName")) {
            throw 42;
        }
        name = Pyxis::toWideBuffer("property " + std::to_string(number));
    }
};

using TiffCodec = NamingCodec<TiffFormatCodec>;
using QBTiffCodec = NamingCodec<QBTiffFormatCodec>;
using NitfCodec = NamingCodec<NITFFormatCodec>;

template <typename Property, typename... Arguments>
PropertyPointer property(Arguments&&... arguments) {
    return std::make_shared<Property>(std::forward<Arguments>(arguments)...);
}

/// Finds the same file for every name.
class Finder : public Pyxis::FindFileInterface {
  public:
    Finder(World& world, std::string path) : world_(world), path_(std::move(path)) {}
    bool findFile(const Pyxis::ImageFormatCodec*, const Pyxis::FileSpecifier& base,
                  const Pyxis::FileSpecifier& name, Pyxis::FileSpecifier& found) override {
        if (world_.fails("findFile")) {
            return false;
        }
        world_.note("find " + Pyxis::toUtf8(name.string()) + " by " + Pyxis::toUtf8(base.string()));
        found = Pyxis::fileSpecifier(path_);
        return true;
    }

  private:
    World& world_;
    std::string path_;
};

/// A frame at the origin of coordinate system 32632, with that pixel size; `world` records each
/// call to its georeference.
inline FrameFacts bandFrame(double pixelSize = 1.0, const World* world = nullptr) {
    GeoFacts facts;
    facts.world = world;
    facts.pixelX = facts.pixelY = pixelSize;
    facts.width = facts.height = static_cast<std::int32_t>(100.0 / pixelSize);
    facts.code = 32632;
    FrameFacts frame;
    frame.properties.push_back(property<Geo>(facts));
    return frame;
}

/// Such a frame with a text property.
inline FrameFacts describedFrame(std::string_view name, std::string_view text,
                                 double pixelSize = 1.0) {
    FrameFacts frame = bandFrame(pixelSize);
    frame.properties.push_back(property<StringProperty>(name, text));
    return frame;
}

inline const std::string kBandListHeader = "{\n  bandList = \n";

}  // namespace fakes
