#include "bands/StringValue.h"

#include <memory>

#include "pyxis/FormatCodecProperty.h"

namespace kest {

std::optional<Pyxis::StringBuffer> stringValue(Pyxis::FileReadDescriptor& descriptor,
                                               const Pyxis::StringBuffer& name) {
    const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> property(
        descriptor.getProperty(name));
    const auto* text = dynamic_cast<const Pyxis::FormatCodecStringProperty*>(property.get());
    if (text == nullptr) {
        return std::nullopt;
    }
    Pyxis::StringBuffer value;
    text->getValue(value);
    return value;
}

}  // namespace kest
