#include "host/formats/FrameProperties.h"

#include <string>

#include "host/Text.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {

StringBuffer narrowBuffer(std::string_view text) {
    const std::string terminated(text);
    return {static_cast<int>(terminated.size() + 1),
            reinterpret_cast<const unsigned char*>(terminated.c_str()), CharacterType::Narrow};
}

TextProperty::TextProperty(std::string_view name, std::string_view description,
                           std::string_view value)
    : FormatCodecStringProperty(narrowBuffer(value), 0) {
    setUsage(PropertyUsage::Informative);
    setLevel(PropertyLevel::Frame);
    if (value.find('\n') != std::string_view::npos) {
        setStringType(StringType::MultiLine);
    }
    nameText() = toWideBuffer(name);
    descriptionText() = toWideBuffer(description);
}

TextProperty* TextProperty::clone() const {
    return makeOrNull<TextProperty>([&] { return new TextProperty(*this); });
}

BandFilenameProperty::BandFilenameProperty(std::string_view fileName)
    : FASTBandFilenameProperty(toWideBuffer(fileName)) {
    setUsage(PropertyUsage::Informative);
    setLevel(PropertyLevel::Frame);
    nameText() = toWideBuffer("Band File Name");
    descriptionText() = toWideBuffer("Name of the file that holds the band's pixels");
}

BandFilenameProperty* BandFilenameProperty::clone() const {
    return makeOrNull<BandFilenameProperty>([&] { return new BandFilenameProperty(*this); });
}

}  // namespace Pyxis
