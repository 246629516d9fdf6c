#include "bands/FileName.h"

#include "codec/strings/BufferText.h"
#include "sets/ComponentList.h"

namespace kest {

platform::PathName fileNameOf(const Pyxis::FileSpecifier& file) {
    return platform::splitPathName(wideText(file.string()));
}

Pyxis::FileSpecifier componentAt(const Pyxis::FileSpecifier& spec, int index) {
    if (spec.type() != Pyxis::FileSpecifier::Type::Compound) {
        return spec;
    }
    Pyxis::FileSpecifier component;
    int frame = 0;
    getComponent(spec, index, component, frame);
    return component;
}

Pyxis::StringBuffer nameBuffer(std::u16string_view text) {
    Pyxis::StringBuffer buffer;
    Pyxis::StringBuffer::convertString(wideBuffer(text), buffer,
                                       Pyxis::StringBuffer::defaultCharacterType());
    return buffer;
}

}  // namespace kest
