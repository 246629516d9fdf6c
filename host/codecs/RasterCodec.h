#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "host/Text.h"
#include "host/cache/FileCache.h"
#include "host/codecs/RasterImage.h"
#include "host/codecs/RasterSource.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {

/// The opened file of a specifier, from the cache if possible; refused when the format does not
/// read it.
Expected<RasterPointer> openSpecifier(FileCache& cache, const Format& format,
                                      const FileSpecifier& file);

/// On allocation failure the text is unchanged.
void setText(StringBuffer& text, const char* value) noexcept;

/// The common part of the component codecs. `Interface` is one of the codecs of
/// pyxis/ComponentCodecs.h.
template <typename Interface>
class RasterCodec : public Interface, public RasterSources {
  public:
    RasterCodec(const Format& format, std::shared_ptr<FileCache> cache)
        : format_(format), cache_(std::move(cache)) {}
    RasterCodec(const RasterCodec&) = delete;
    RasterCodec& operator=(const RasterCodec&) = delete;
    ~RasterCodec() override { RasterImage::closeAllOf(*this); }

    void getLibVersionInfo(unsigned int& major, unsigned int& minor,
                           unsigned int& build) const override {
        major = PYXIS_VERSION_MAJOR;
        minor = PYXIS_VERSION_MINOR;
        build = PYXIS_VERSION_BUILD;
    }
    void getApiVersionInfo(unsigned int& major, unsigned int& minor) const override {
        major = 6;
        minor = 0;
    }
    CodecCapability codecCapability() const override { return CodecCapability::ReadOnly; }
    bool isValidFileName(const FileSpecifier& file) const override {
        return answerOr(false, [&] { return hasExtensionOf(format_, toUtf8(file.string())); });
    }
    FormatType getFormatDecodabilityType() const override { return FormatType::ByContent; }
    FormatOrganization getFormatOrganization() const override { return FormatOrganization::Frames; }
    FormatFrameType getFormatFrameType() const override { return FormatFrameType::MultiFrame; }
    bool isFormatFeature(FormatFeature feature) const override {
        return std::find(format_.features.begin(), format_.features.end(), feature) !=
               format_.features.end();
    }
    bool isSupportedProperty(FormatCodecPropertyInterface::PropertyIdentifier identifier,
                             StringBuffer* name) const override {
        using Identifier = FormatCodecPropertyInterface::PropertyIdentifier;
        const char* own = format_.ownProperty;
        return answerOr(false, [&] {
            return identifier == Identifier::GeoCorrelation ||
                   (identifier == Identifier::Custom && own != nullptr && name != nullptr &&
                    toUtf8(*name) == own);
        });
    }
    int getNumExtensions() const override { return static_cast<int>(format_.extensions.size()); }
    void getExtensionText(int index, StringBuffer& text) const override {
        const bool known = index >= 0 && index < RasterCodec::getNumExtensions();
        setText(text, known ? format_.extensions[static_cast<std::size_t>(index)] : "");
    }
    void getFormatName(StringBuffer& text) const override { setText(text, format_.name); }
    void getDescriptionText(StringBuffer& text) const override {
        setText(text, format_.description);
    }
    void getCopyrightText(StringBuffer& text) const override { setText(text, ""); }
    FormatDecodability isDecodableFile(const FileSpecifier& file,
                                       FindFileInterface* /*finder*/) const override {
        return answerOr(FormatDecodability::NotThisFormat, [&] {
            return openSpecifier(*cache_, format_, file) ? FormatDecodability::Decodable
                                                         : FormatDecodability::NotThisFormat;
        });
    }
    bool isEncodableImage(const DataModelAttributes& /*attributes*/, Size /*size*/) const override {
        return false;
    }
    /// The files of an image are beside it: the finder is not needed.
    ReadImageFileInterface* openImage(const FileSpecifier* file,
                                      FindFileInterface& /*finder*/) const override {
        return RasterCodec::openImage(file);
    }
    ReadImageFileInterface* openImage(const FileSpecifier* file) const override {
        return answerOr<ReadImageFileInterface*>(nullptr, [&]() -> ReadImageFileInterface* {
            if (file == nullptr) {
                return nullptr;
            }
            Expected<RasterPointer> opened = openSpecifier(*cache_, format_, *file);
            return opened ? new RasterImage(*this, format_, *file, std::move(*opened)) : nullptr;
        });
    }
    WriteImageFileInterface* writeImage() const override { return nullptr; }
    ReadImageFileInterface* cloneOpenImage(const ReadImageFileInterface* image) const override {
        const auto* own = dynamic_cast<const RasterImage*>(image);
        return own != nullptr && own->getCodec() == this
                   ? RasterCodec::openImage(&own->getFileSpecifier())
                   : nullptr;
    }

    std::optional<RasterSource> source(const FileSpecifier& file, int frame) const override {
        const Expected<RasterPointer> opened = openSpecifier(*cache_, format_, file);
        return opened ? sourceOf(**opened, frame) : std::nullopt;
    }

  protected:
    const Format& format() const { return format_; }

  private:
    const Format& format_;
    std::shared_ptr<FileCache> cache_;
};

/// The codecs that publish a property under a number.
template <typename Interface>
class NumberedPropertyCodec final : public RasterCodec<Interface> {
  public:
    using RasterCodec<Interface>::RasterCodec;
    void getPropertyName(int number, StringBuffer& name) const override {
        const Format& format = this->format();
        setText(name, number == format.ownPropertyNumber ? format.ownProperty : "");
    }
};

}  // namespace Pyxis
