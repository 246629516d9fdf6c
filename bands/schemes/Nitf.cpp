#include <array>

#include "bands/AsciiText.h"
#include "bands/StringValue.h"
#include "bands/schemes/Schemes.h"
#include "codec/strings/BufferText.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FileReadDescriptor.h"
#include "sets/FindCodec.h"

namespace kest {
namespace {

using enum BandType;
using enum BandAssignment;
using namespace string_id;

constexpr BucketRow kMultispectral{kProductMultispectral, 1};

/// By the letters of the band representation.
constexpr std::array kBands{
    ProductBand{u"R", {kProductRed, Red, RedChannel, 2}, kMultispectral},
    ProductBand{u"G", {kProductGreen, Green, GreenChannel, 1}, kMultispectral},
    ProductBand{u"B", {kProductBlue, Blue, BlueChannel, 0}, kMultispectral},
    ProductBand{u"N", {kProductNearInfrared, NearInfrared, NotAssigned, 3}, kMultispectral},
    ProductBand{u"M",
                {kProductPanchromatic, Panchromatic, NotAssigned, 0},
                {kProductPanchromaticBucket, 0}},
};

constexpr int kBandRepresentation = 10;

/// The band's representation. Nothing when no NITF codec reads the file or the frame has none; an
/// empty text when the host throws.
std::optional<std::u16string> readLetter(const BandFile& band) {
    try {
        const auto* codec = dynamic_cast<const NITFFormatCodec*>(findCodec(band.file));
        if (codec == nullptr) {
            return std::nullopt;
        }
        Pyxis::StringBuffer name;
        codec->getPropertyName(kBandRepresentation, name);
        Pyxis::FileReadDescriptor descriptor(band.file, codec);
        descriptor.setFrame(band.frame);
        const std::optional<Pyxis::StringBuffer> value = stringValue(descriptor, name);
        if (!value) {
            return std::nullopt;
        }
        Pyxis::StringBuffer letter;
        Pyxis::StringBuffer::convertString(*value, letter,
                                           Pyxis::StringBuffer::defaultCharacterType());
        return wideText(letter);
    } catch (...) {
        // Unlike a frame without the property, such a band gets a generic name.
        return std::u16string();
    }
}

std::optional<Identity> identify(const BandFile& band) {
    const std::optional<std::u16string> letter = readLetter(band);
    if (!letter) {
        return std::nullopt;
    }
    const ProductBand* row = findBand(kBands, upperCase(*letter));
    return row == nullptr ? Identity::generic(band.ordinal) : Identity(row->band, row->bucket);
}

std::string whyGeneric(const BandFile& band) {
    const std::u16string letter = readLetter(band).value_or(u"");
    if (letter.empty()) {
        return "it has no band letter";
    }
    return findBand(kBands, upperCase(letter)) != nullptr
               ? ""
               : "its band letter is \"" + narrowText(wideBuffer(letter)) +
                     "\", not R, G, B, N or M";
}

}  // namespace

constexpr Scheme kNitfScheme{
    SchemeNitf,
    "nitf",
    "NITF files",
    [](const Pyxis::FileSpecifier& file, const platform::PathName&) { return isNitfFile(file); },
    identify,
    fileNameAsReference,
    whyGeneric,
};

bool isNitfFile(const Pyxis::FileSpecifier& file) {
    return dynamic_cast<const NITFFormatCodec*>(findCodec(file)) != nullptr;
}

}  // namespace kest
