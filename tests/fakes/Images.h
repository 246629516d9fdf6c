#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "pyxis/FormatCodecPropertySetIterator.h"
#include "pyxis/ImageFormatCodec.h"
#include "tests/fakes/Properties.h"

namespace fakes {

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

}  // namespace fakes
