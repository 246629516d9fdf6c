#include "codec/KestMultispectralCodec.h"

#include <cstdlib>

#include "bands/catalogue/ProductCatalogue.h"
#include "codec/ApiVersion.h"
#include "codec/strings/BufferText.h"
#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "platform/Platform.h"
#include "properties/PropertyNames.h"
#include "pyxis/NoThrow.h"
#include "reader/KestMultispectralReadFile.h"

using Codec = KestMultispectralCodec;

namespace {

/// Text `id`; empty when it cannot be had.
void loadText(unsigned int id, Pyxis::StringBuffer& text) {
    if (!Pyxis::attempt([&] { kest::loadResourceString(id, text); })) {
        text.set(0, nullptr, Pyxis::CharacterType::Plain);
    }
}

}  // namespace

Codec::KestMultispectralCodec() = default;

Codec::~KestMultispectralCodec() {
    kest::releaseResourceModule();
}

void Codec::getLibVersionInfo(unsigned int& major, unsigned int& minor, unsigned int& build) const {
    const auto version = Pyxis::answerOr(kest::platform::ModuleVersion(), [] {
        return kest::platform::moduleVersion(u"kestmultispectralcodec54.dll");
    });
    major = version.major;
    minor = version.minor;
    build = version.build;
}

void Codec::getApiVersionInfo(unsigned int& major, unsigned int& minor) const {
    major = static_cast<unsigned int>(std::atoi(kest::kApiMajorVersion));
    minor = static_cast<unsigned int>(std::atoi(kest::kApiMinorVersion));
}

Pyxis::CodecCapability Codec::codecCapability() const {
    return Pyxis::CodecCapability::ReadOnly;
}

bool Codec::isValidFileName(const Pyxis::FileSpecifier& /*file*/) const {
    return false;  // A set has no file name of its own.
}

Pyxis::FormatType Codec::getFormatDecodabilityType() const {
    return Pyxis::FormatType::ByContent;
}

Pyxis::FormatOrganization Codec::getFormatOrganization() const {
    return Pyxis::FormatOrganization::Frames;
}

Pyxis::FormatFrameType Codec::getFormatFrameType() const {
    return Pyxis::FormatFrameType::MultiFrame;
}

bool Codec::isFormatFeature(Pyxis::FormatFeature feature) const {
    return feature == Pyxis::FormatFeature::CompoundFiles;
}

bool Codec::isSupportedProperty(Pyxis::FormatCodecPropertyInterface::PropertyIdentifier identifier,
                                Pyxis::StringBuffer* name) const {
    return Pyxis::answerOr(
        false, [&] { return kest::isSupportedMultispectralProperty(identifier, name); });
}

int Codec::getNumExtensions() const {
    return 0;
}

void Codec::getExtensionText(int /*index*/, Pyxis::StringBuffer& text) const {
    text.set(0, nullptr, Pyxis::CharacterType::Plain);
}

void Codec::getFormatName(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kFormatName, text);
}

void Codec::getDescriptionText(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kFormatDescription, text);
}

void Codec::getCopyrightText(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kCopyright, text);
}

bool Codec::isEncodableImage(const Pyxis::DataModelAttributes& /*attributes*/,
                             Pyxis::Size /*size*/) const {
    return false;
}

Pyxis::ReadImageFileInterface* Codec::openImage(const Pyxis::FileSpecifier* file,
                                                Pyxis::FindFileInterface& finder) const {
    return openSet(file, &finder);
}

Pyxis::ReadImageFileInterface* Codec::openImage(const Pyxis::FileSpecifier* file) const {
    return openSet(file, nullptr);
}

Pyxis::ReadImageFileInterface* Codec::openSet(const Pyxis::FileSpecifier* file,
                                              Pyxis::FindFileInterface* finder) const {
    if (file == nullptr) {
        return nullptr;
    }
    return Pyxis::makeOrNull<Pyxis::ReadImageFileInterface>(
        [&] { return new KestMultispectralReadFile(this, file, finder); });
}

Pyxis::WriteImageFileInterface* Codec::writeImage() const {
    return nullptr;
}

Pyxis::ReadImageFileInterface* Codec::cloneOpenImage(
    const Pyxis::ReadImageFileInterface* image) const {
    const auto* set = dynamic_cast<const KestMultispectralReadFile*>(image);
    if (set == nullptr) {
        return nullptr;
    }
    return Pyxis::makeOrNull<Pyxis::ReadImageFileInterface>(
        [set] { return new KestMultispectralReadFile(*set); });
}

void Codec::setResourceFileName(const Pyxis::FileSpecifier& file) {
    Pyxis::attempt([&] { kest::setResourceFileName(file); });
}

bool Codec::setProductCatalogue(const Pyxis::FileSpecifier& file, Pyxis::StringBuffer* reason) {
    return kest::answerOr(false, [&] {
        const auto fault = kest::setProductCatalogue(file);
        if (reason != nullptr) {
            *reason = kest::wideBuffer(kest::wideText(kest::narrowBuffer(fault.reason)));
        }
        return fault.reason.empty();
    });
}

bool Codec::getBandDetails(const Pyxis::ReadImageFileInterface& image, int frame,
                           BandDetails& details) const {
    const auto* set = dynamic_cast<const KestMultispectralReadFile*>(&image);
    if (set == nullptr || frame < 0 || frame >= set->getNumFrames()) {
        return false;
    }
    return kest::attempt([&] { details = set->band(frame).details; });
}

bool Codec::getMultispectralPropertyName(MultispectralPropertyId id,
                                         Pyxis::StringBuffer& name) const {
    return Pyxis::answerOr(false, [&] { return kest::multispectralPropertyName(id, name); });
}
