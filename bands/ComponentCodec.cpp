#include "bands/ComponentCodec.h"

#include <cstddef>
#include <memory>
#include <string_view>

#include "codec/strings/BufferText.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FileReadDescriptor.h"

namespace kest {
namespace {

using Pyxis::FileReadDescriptor;
using Pyxis::FormatCodecStringProperty;
using Pyxis::StringBuffer;

constexpr std::string_view kBandListHeader = "{\n  bandList = \n";
constexpr int kImageDescription = 9;
constexpr int kBandRepresentation = 10;

/// Value of the selected frame's property, if it is a text.
std::optional<StringBuffer> stringValue(FileReadDescriptor& descriptor, const StringBuffer& name) {
    const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> property(
        descriptor.getProperty(name));
    const auto* text = dynamic_cast<const FormatCodecStringProperty*>(property.get());
    if (text == nullptr) {
        return std::nullopt;
    }
    StringBuffer value;
    text->getValue(value);
    return value;
}

/// The bytes up to the terminator, whatever character type the codec declares.
std::string bytesOf(const StringBuffer& value) {
    std::string bytes;
    if (value.numDataBytes() > 0) {
        bytes.assign(reinterpret_cast<const char*>(value.data()),
                     static_cast<std::size_t>(value.numDataBytes()));
    }
    return bytes.substr(0, bytes.find('\0'));
}

/// Asks the TIFF codec, of either kind, for the image description's name; false for other codecs.
bool imageDescriptionName(const Pyxis::ImageFormatCodec* codec, StringBuffer& name) {
    if (const auto* quickBird = dynamic_cast<const QBTiffFormatCodec*>(codec)) {
        quickBird->getPropertyName(kImageDescription, name);
        return true;
    }
    if (const auto* tiff = dynamic_cast<const TiffFormatCodec*>(codec)) {
        tiff->getPropertyName(kImageDescription, name);
        return true;
    }
    return false;
}

}  // namespace

const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file) {
    const Pyxis::ImageFormatCodec* codec = nullptr;
    return FileReadDescriptor::findImageFileCodec(file, codec) ==
                   Pyxis::FormatDecodability::Decodable
               ? codec
               : nullptr;
}

std::optional<std::string> readBandListText(const Pyxis::FileSpecifier& file,
                                            const Pyxis::ImageFormatCodec* codec) {
    try {
        StringBuffer name;
        if (!imageDescriptionName(codec, name)) {
            return std::nullopt;
        }
        FileReadDescriptor descriptor(file, codec);
        const std::optional<StringBuffer> value = stringValue(descriptor, name);
        if (std::string text = value ? bytesOf(*value) : std::string();
            text.starts_with(kBandListHeader)) {
            return text;
        }
    } catch (...) {
        // A file whose codec fails here has no band list.
    }
    return std::nullopt;
}

std::optional<std::u16string> readNitfBandLetter(const Pyxis::FileSpecifier& file, int frame) {
    try {
        const auto* codec = dynamic_cast<const NITFFormatCodec*>(findCodec(file));
        if (codec == nullptr) {
            return std::nullopt;
        }
        StringBuffer name;
        codec->getPropertyName(kBandRepresentation, name);
        FileReadDescriptor descriptor(file, codec);
        descriptor.setFrame(frame);
        const std::optional<StringBuffer> value = stringValue(descriptor, name);
        if (!value) {
            return std::nullopt;
        }
        StringBuffer letter;
        StringBuffer::convertString(*value, letter, StringBuffer::defaultCharacterType());
        return wideText(letter);
    } catch (...) {
        // Not the same as a frame without the property: such a band is named generically.
        return std::u16string();
    }
}

}  // namespace kest
