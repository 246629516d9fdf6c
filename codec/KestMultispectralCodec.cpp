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

namespace {

/// Loads text `id`; empty on failure.
void loadText(unsigned int id, Pyxis::StringBuffer& text) {
    if (!Pyxis::attempt([&] { kest::loadResourceString(id, text); })) {
        text.set(0, nullptr, Pyxis::CharacterType::Plain);
    }
}

}  // namespace

KestMultispectralCodec::KestMultispectralCodec() = default;

KestMultispectralCodec::~KestMultispectralCodec() {
    kest::releaseResourceModule();
}

void KestMultispectralCodec::getLibVersionInfo(unsigned int& major, unsigned int& minor,
                                               unsigned int& build) const {
    const auto version = Pyxis::answerOr(kest::platform::ModuleVersion(), [] {
        return kest::platform::moduleVersion(u"kestmultispectralcodec54.dll");
    });
    major = version.major;
    minor = version.minor;
    build = version.build;
}

void KestMultispectralCodec::getApiVersionInfo(unsigned int& major, unsigned int& minor) const {
    major = static_cast<unsigned int>(std::atoi(kest::kApiMajorVersion));
    minor = static_cast<unsigned int>(std::atoi(kest::kApiMinorVersion));
}

Pyxis::CodecCapability KestMultispectralCodec::codecCapability() const {
    return Pyxis::CodecCapability::ReadOnly;
}

bool KestMultispectralCodec::isValidFileName(const Pyxis::FileSpecifier& /*file*/) const {
    return false;  // A set has no file name of its own.
}

Pyxis::FormatType KestMultispectralCodec::getFormatDecodabilityType() const {
    return Pyxis::FormatType::ByContent;
}

Pyxis::FormatOrganization KestMultispectralCodec::getFormatOrganization() const {
    return Pyxis::FormatOrganization::Frames;
}

Pyxis::FormatFrameType KestMultispectralCodec::getFormatFrameType() const {
    return Pyxis::FormatFrameType::MultiFrame;
}

bool KestMultispectralCodec::isFormatFeature(Pyxis::FormatFeature feature) const {
    return feature == Pyxis::FormatFeature::CompoundFiles;
}

bool KestMultispectralCodec::isSupportedProperty(
    Pyxis::FormatCodecPropertyInterface::PropertyIdentifier identifier,
    Pyxis::StringBuffer* name) const {
    return Pyxis::answerOr(
        false, [&] { return kest::isSupportedMultispectralProperty(identifier, name); });
}

int KestMultispectralCodec::getNumExtensions() const {
    return 0;
}

void KestMultispectralCodec::getExtensionText(int /*index*/, Pyxis::StringBuffer& text) const {
    text.set(0, nullptr, Pyxis::CharacterType::Plain);
}

void KestMultispectralCodec::getFormatName(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kFormatName, text);
}

void KestMultispectralCodec::getDescriptionText(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kFormatDescription, text);
}

void KestMultispectralCodec::getCopyrightText(Pyxis::StringBuffer& text) const {
    loadText(kest::string_id::kCopyright, text);
}

bool KestMultispectralCodec::isEncodableImage(const Pyxis::DataModelAttributes& /*attributes*/,
                                              Pyxis::Size /*size*/) const {
    return false;
}

Pyxis::ReadImageFileInterface* KestMultispectralCodec::openImage(
    const Pyxis::FileSpecifier* file, Pyxis::FindFileInterface& finder) const {
    return openSet(file, &finder);
}

Pyxis::ReadImageFileInterface* KestMultispectralCodec::openImage(
    const Pyxis::FileSpecifier* file) const {
    return openSet(file, nullptr);
}

Pyxis::ReadImageFileInterface* KestMultispectralCodec::openSet(
    const Pyxis::FileSpecifier* file, Pyxis::FindFileInterface* finder) const {
    if (file == nullptr) {
        return nullptr;
    }
    return Pyxis::makeOrNull<Pyxis::ReadImageFileInterface>(
        [&] { return new KestMultispectralReadFile(this, file, finder); });
}

Pyxis::WriteImageFileInterface* KestMultispectralCodec::writeImage() const {
    return nullptr;
}

Pyxis::ReadImageFileInterface* KestMultispectralCodec::cloneOpenImage(
    const Pyxis::ReadImageFileInterface* image) const {
    const auto* set = dynamic_cast<const KestMultispectralReadFile*>(image);
    if (set == nullptr) {
        return nullptr;
    }
    return Pyxis::makeOrNull<Pyxis::ReadImageFileInterface>(
        [set] { return new KestMultispectralReadFile(*set); });
}

void KestMultispectralCodec::setResourceFileName(const Pyxis::FileSpecifier& file) {
    Pyxis::attempt([&] { kest::setResourceFileName(file); });
}

bool KestMultispectralCodec::setProductCatalogue(const Pyxis::FileSpecifier& file,
                                                 Pyxis::StringBuffer* reason) {
    return Pyxis::answerOr(false, [&] {
        const auto fault = kest::setProductCatalogue(file);
        if (reason != nullptr) {
            *reason = kest::wideBuffer(kest::wideText(kest::narrowBuffer(fault.reason)));
        }
        return fault.reason.empty();
    });
}

bool KestMultispectralCodec::getBandDetails(const Pyxis::ReadImageFileInterface& image, int frame,
                                            BandDetails& details) const {
    const auto* set = dynamic_cast<const KestMultispectralReadFile*>(&image);
    if (set == nullptr || frame < 0 || frame >= set->getNumFrames()) {
        return false;
    }
    return Pyxis::attempt([&] { details = set->band(frame).details; });
}

int KestMultispectralCodec::getNamingScheme(const Pyxis::ReadImageFileInterface& image) const {
    const auto* set = dynamic_cast<const KestMultispectralReadFile*>(&image);
    return set == nullptr ? kest::SchemeNone : set->setKind();
}

bool KestMultispectralCodec::getMultispectralPropertyName(MultispectralPropertyId id,
                                                          Pyxis::StringBuffer& name) const {
    return Pyxis::answerOr(false, [&] { return kest::multispectralPropertyName(id, name); });
}
