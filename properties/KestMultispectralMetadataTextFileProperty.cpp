#include "properties/KestMultispectralMetadataTextFileProperty.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "platform/Platform.h"
#include "pyxis/NoThrow.h"

namespace {

constexpr int kMaximumBytes = std::numeric_limits<int>::max();

}  // namespace

KestMultispectralMetadataTextFileProperty::KestMultispectralMetadataTextFileProperty(
    const Pyxis::FileSpecifier& metadataFile)
    : FormatCodecStringProperty(Pyxis::StringBuffer(), kMaximumBytes),
      KestMultispectralProperty(kest::MultispectralPropertyId::MetadataTextFile),
      metadataFile_(metadataFile) {
    setIdentifier(PropertyIdentifier::Custom);
    setStringType(StringType::MultiLine);
    setLevel(PropertyLevel::Image);
    setUsage(PropertyUsage::Informative);
    kest::loadResourceString(kest::string_id::kMetadataTextFileName, nameText());
    kest::loadResourceString(kest::string_id::kMetadataTextFileDescription, descriptionText());
    // A file that does not fit into memory counts as unreadable.
    valid_ = Pyxis::answerOr(false, [this] { return readWhole(); });
}

KestMultispectralMetadataTextFileProperty::KestMultispectralMetadataTextFileProperty(
    const KestMultispectralMetadataTextFileProperty& other) = default;
KestMultispectralMetadataTextFileProperty::~KestMultispectralMetadataTextFileProperty() = default;

Pyxis::FormatCodecPropertyInterface* KestMultispectralMetadataTextFileProperty::clone() const {
    return Pyxis::makeOrNull<KestMultispectralMetadataTextFileProperty>(
        [this] { return new KestMultispectralMetadataTextFileProperty(*this); });
}

bool KestMultispectralMetadataTextFileProperty::isValid() const {
    return valid_;
}

bool KestMultispectralMetadataTextFileProperty::getMetadataFile(Pyxis::FileSpecifier& out) const {
    Pyxis::attempt([&] { out.assign(metadataFile_); });
    return valid_;
}

bool KestMultispectralMetadataTextFileProperty::readWhole() {
    if (metadataFile_.type() != Pyxis::FileSpecifier::Type::PlainFile) {
        return false;
    }
    const auto file = kest::platform::PlainFile::open(metadataFile_.string());
    if (!file) {
        return false;
    }
    // 32 bits: compatibility.md, 28.
    const auto size = static_cast<std::uint32_t>(file->size());
    if (size >= static_cast<std::uint32_t>(kMaximumBytes)) {
        return false;
    }
    std::vector<unsigned char> text(std::size_t{size} + 1);
    if (file->readFromStart(text.data(), size) != size) {
        return false;
    }
    // Nothing may fail once the value is set: an invalid property has an empty value.
    const Pyxis::StringBuffer value(static_cast<int>(text.size()), text.data(),
                                    Pyxis::CharacterType::Plain);
    return value.data() != nullptr && setValue(value);
}
