#include "properties/PropertyNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "codec/strings/BufferText.h"
#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "platform/Platform.h"

namespace kest {
namespace {

/// The id of the text that names a property, by MultispectralPropertyId.
constexpr std::array kNameIds = {
    string_id::kReferenceNameName, string_id::kBucketName,           string_id::kBandNameName,
    string_id::kBandTypeName,      string_id::kMetadataTextFileName,
};

/// The order in which a caller's name is compared.
constexpr std::array kMatchOrder = {
    MultispectralPropertyId::MetadataTextFile, MultispectralPropertyId::ReferenceName,
    MultispectralPropertyId::Bucket,           MultispectralPropertyId::BandName,
    MultispectralPropertyId::BandType,
};

bool isSingleByte(const Pyxis::StringBuffer& text) {
    return text.type() == Pyxis::CharacterType::Plain ||
           text.type() == Pyxis::CharacterType::SingleByte;
}

/// The bytes with a terminator, which the buffer may lack.
std::vector<unsigned char> terminated(const Pyxis::StringBuffer& text) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(text.numDataBytes()) + 1);
    if (text.data() != nullptr) {
        std::copy_n(text.data(), bytes.size() - 1, bytes.begin());
    }
    return bytes;
}

}  // namespace

bool isSamePropertyName(const Pyxis::StringBuffer& left, const Pyxis::StringBuffer& right) {
    if (isSingleByte(left) && isSingleByte(right)) {
        return platform::compareMultibyte(terminated(left).data(), terminated(right).data()) == 0;
    }
    return left.type() == Pyxis::CharacterType::Wide &&
           right.type() == Pyxis::CharacterType::Wide && wideText(left) == wideText(right);
}

bool multispectralPropertyName(MultispectralPropertyId id, Pyxis::StringBuffer& name) {
    const auto index = static_cast<std::size_t>(id);
    if (index >= kNameIds.size()) {
        return false;
    }
    loadResourceString(kNameIds[index], name);
    return true;
}

bool isSupportedMultispectralProperty(
    Pyxis::FormatCodecPropertyInterface::PropertyIdentifier identifier,
    const Pyxis::StringBuffer* name) {
    using PropertyIdentifier = Pyxis::FormatCodecPropertyInterface::PropertyIdentifier;
    if (identifier != PropertyIdentifier::Custom) {
        return identifier == PropertyIdentifier::GeoCorrelation;
    }
    if (name == nullptr) {
        return false;
    }
    return std::any_of(kMatchOrder.begin(), kMatchOrder.end(), [name](MultispectralPropertyId id) {
        Pyxis::StringBuffer known;
        return multispectralPropertyName(id, known) && isSamePropertyName(known, *name);
    });
}

}  // namespace kest
