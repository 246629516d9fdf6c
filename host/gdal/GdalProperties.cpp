#include "host/gdal/GdalProperties.h"

#include <string>

#include "host/Text.h"
#include "host/gdal/Guarded.h"

namespace Pyxis {

StringBuffer narrowBuffer(std::string_view text) {
    const std::string terminated(text);
    return {static_cast<int>(terminated.size() + 1),
            reinterpret_cast<const unsigned char*>(terminated.c_str()), CharacterType::Narrow};
}

GdalStringProperty::GdalStringProperty(std::string_view name, std::string_view description,
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

GdalStringProperty* GdalStringProperty::clone() const {
    return newOrNull<GdalStringProperty>(*this);
}

GdalBandFilenameProperty::GdalBandFilenameProperty(std::string_view fileName)
    : FASTBandFilenameProperty(toWideBuffer(fileName)) {
    setUsage(PropertyUsage::Informative);
    setLevel(PropertyLevel::Frame);
    nameText() = toWideBuffer("Band File Name");
    descriptionText() = toWideBuffer("Name of the file that holds the band's pixels");
}

GdalBandFilenameProperty* GdalBandFilenameProperty::clone() const {
    return newOrNull<GdalBandFilenameProperty>(*this);
}

}  // namespace Pyxis
