#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Text.h"
#include "host/cache/FileCache.h"
#include "host/formats/GdalFormat.h"
#include "host/gdal/GdalImage.h"
#include "host/gdal/Guarded.h"
#include "pyxis/ComponentCodecs.h"

namespace Pyxis {

/// The opened file behind a specifier, out of the cache where that has it; null, with the reason in
/// `why`, when the format does not read it.
std::shared_ptr<OpenedFile> openSpecifier(FileCache& cache, const GdalFormat& format,
                                          const FileSpecifier& file, std::string& why);

/// Whether the format's list of extensions has that of the file.
bool hasExtensionOf(const GdalFormat& format, const FileSpecifier& file);

/// Everything that the component codecs have in common. `Interface` is one of the codecs of
/// pyxis/ComponentCodecs.h.
template <typename Interface>
class GdalCodec : public Interface {
  public:
    GdalCodec(const GdalFormat& format, std::shared_ptr<FileCache> cache)
        : format_(format), cache_(std::move(cache)) {}
    GdalCodec(const GdalCodec&) = delete;
    GdalCodec& operator=(const GdalCodec&) = delete;
    ~GdalCodec() override { GdalImage::closeAllOf(*this); }

    void getLibVersionInfo(unsigned int& major, unsigned int& minor,
                           unsigned int& build) const override {
        major = 1;
        minor = 0;
        build = 0;
    }
    void getApiVersionInfo(unsigned int& major, unsigned int& minor) const override {
        major = 6;
        minor = 0;
    }
    CodecCapability codecCapability() const override { return CodecCapability::ReadOnly; }
    bool isValidFileName(const FileSpecifier& file) const override {
        return hasExtensionOf(format_, file);
    }
    FormatType getFormatDecodabilityType() const override { return FormatType::ByContent; }
    FormatOrganization getFormatOrganization() const override { return FormatOrganization::Frames; }
    FormatFrameType getFormatFrameType() const override { return FormatFrameType::MultiFrame; }
    bool isFormatFeature(FormatFeature feature) const override {
        return format_.texts().hasFeature(feature);
    }
    bool isSupportedProperty(FormatCodecPropertyInterface::PropertyIdentifier identifier,
                             StringBuffer* name) const override {
        using Identifier = FormatCodecPropertyInterface::PropertyIdentifier;
        const char* own = format_.texts().ownProperty;
        return identifier == Identifier::GeoCorrelation ||
               (identifier == Identifier::Custom && own != nullptr && name != nullptr &&
                toUtf8(*name) == own);
    }
    int getNumExtensions() const override {
        return static_cast<int>(format_.texts().extensions.size());
    }
    void getExtensionText(int index, StringBuffer& text) const override {
        const bool known = index >= 0 && index < GdalCodec::getNumExtensions();
        text =
            toWideBuffer(known ? format_.texts().extensions[static_cast<std::size_t>(index)] : "");
    }
    void getFormatName(StringBuffer& text) const override {
        text = toWideBuffer(format_.texts().name);
    }
    void getDescriptionText(StringBuffer& text) const override {
        text = toWideBuffer(format_.texts().description);
    }
    void getCopyrightText(StringBuffer& text) const override { text = toWideBuffer(""); }
    FormatDecodability isDecodableFile(const FileSpecifier& file,
                                       FindFileInterface* /*finder*/) const override {
        return guarded(FormatDecodability::NotThisFormat, [&] {
            std::string why;
            return openSpecifier(*cache_, format_, file, why) ? FormatDecodability::Decodable
                                                              : FormatDecodability::NotThisFormat;
        });
    }
    bool isEncodableImage(const DataModelAttributes& /*attributes*/, Size /*size*/) const override {
        return false;
    }
    /// The files of an image lie beside it: the finder is not needed.
    ReadImageFileInterface* openImage(const FileSpecifier* file,
                                      FindFileInterface& /*finder*/) const override {
        return GdalCodec::openImage(file);
    }
    ReadImageFileInterface* openImage(const FileSpecifier* file) const override {
        return guarded<ReadImageFileInterface*>(nullptr, [&]() -> ReadImageFileInterface* {
            std::string why;
            auto opened = file != nullptr ? openSpecifier(*cache_, format_, *file, why) : nullptr;
            return opened ? new GdalImage(*this, format_, *file, std::move(opened)) : nullptr;
        });
    }
    WriteImageFileInterface* writeImage() const override { return nullptr; }
    ReadImageFileInterface* cloneOpenImage(const ReadImageFileInterface* image) const override {
        const auto* own = dynamic_cast<const GdalImage*>(image);
        return own != nullptr && own->getCodec() == this
                   ? GdalCodec::openImage(&own->getFileSpecifier())
                   : nullptr;
    }

  protected:
    const GdalFormat& format() const { return format_; }

  private:
    const GdalFormat& format_;
    std::shared_ptr<FileCache> cache_;
};

/// The codecs that publish a property under a number.
template <typename Interface>
class NumberedPropertyCodec final : public GdalCodec<Interface> {
  public:
    using GdalCodec<Interface>::GdalCodec;
    void getPropertyName(int number, StringBuffer& name) const override {
        const FormatTexts& texts = this->format().texts();
        name = toWideBuffer(number == texts.ownPropertyNumber ? texts.ownProperty : "");
    }
};

}  // namespace Pyxis
