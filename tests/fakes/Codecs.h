#pragma once

#include <map>
#include <string>
#include <utility>

#include "host/CodecRegistry.h"
#include "host/Text.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FindFileInterface.h"
#include "tests/fakes/Images.h"

// In-memory fakes of the host's codecs. A Codec reads the files that were added to it; all answers
// are plain data.

namespace fakes {

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

inline const std::string kBandListHeader = "{\n  bandList = \n";

}  // namespace fakes
