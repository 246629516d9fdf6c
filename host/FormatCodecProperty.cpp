#include "pyxis/FormatCodecProperty.h"

namespace Pyxis {

using Property = FormatCodecPropertyInterface;

Property::FormatCodecPropertyInterface() = default;
Property::FormatCodecPropertyInterface(const FormatCodecPropertyInterface& other) = default;
Property::~FormatCodecPropertyInterface() = default;

Property::PropertyIdentifier Property::getIdentifier() const {
    return identifier_;
}
Property::PropertyDataType Property::getDataType() const {
    return dataType_;
}
bool Property::isRequired() const {
    return required_;
}
bool Property::isContextSensitive() const {
    return contextSensitive_;
}
const StringBuffer& Property::getDescription() const {
    return description_;
}
const StringBuffer& Property::getName() const {
    return name_;
}
Property::PropertyUsage Property::getUsage() const {
    return usage_;
}
Property::PropertyLevel Property::getLevel() const {
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
