#include "pyxis/FormatCodecProperty.h"

namespace Pyxis {

FormatCodecPropertyInterface::FormatCodecPropertyInterface() = default;
FormatCodecPropertyInterface::FormatCodecPropertyInterface(
    const FormatCodecPropertyInterface& other) = default;
FormatCodecPropertyInterface::~FormatCodecPropertyInterface() = default;

FormatCodecPropertyInterface::PropertyIdentifier FormatCodecPropertyInterface::getIdentifier()
    const {
    return identifier_;
}
FormatCodecPropertyInterface::PropertyDataType FormatCodecPropertyInterface::getDataType() const {
    return dataType_;
}
bool FormatCodecPropertyInterface::isRequired() const {
    return required_;
}
bool FormatCodecPropertyInterface::isContextSensitive() const {
    return contextSensitive_;
}
const StringBuffer& FormatCodecPropertyInterface::getDescription() const {
    return description_;
}
const StringBuffer& FormatCodecPropertyInterface::getName() const {
    return name_;
}
FormatCodecPropertyInterface::PropertyUsage FormatCodecPropertyInterface::getUsage() const {
    return usage_;
}
FormatCodecPropertyInterface::PropertyLevel FormatCodecPropertyInterface::getLevel() const {
    return level_;
}

FormatCodecStringProperty::FormatCodecStringProperty(const StringBuffer& value, int maximumBytes)
    : value_(value), defaultValue_(value), maximumBytes_(maximumBytes) {
    setDataType(PropertyDataType::Text);
}
FormatCodecStringProperty::FormatCodecStringProperty(const FormatCodecStringProperty& other) =
    default;

void FormatCodecStringProperty::getDefaultValue(StringBuffer& value) const {
    value = defaultValue_;
}

void FormatCodecStringProperty::getValue(StringBuffer& value) const {
    value = value_;
}

bool FormatCodecStringProperty::setValue(const StringBuffer& value) {
    if (maximumBytes_ > 0 && value.numDataBytes() > maximumBytes_) {
        return false;
    }
    value_ = value;
    return true;
}

int FormatCodecStringProperty::maximumStringBytes() const {
    return maximumBytes_;
}
FormatCodecStringProperty::StringType FormatCodecStringProperty::getStringType() const {
    return stringType_;
}

}  // namespace Pyxis
