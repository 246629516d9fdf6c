// The component list: a text of any bytes and any character type is counted, read and extended. The
// three functions and the parsed list agree, and what was appended is read back.

#include <limits>
#include <optional>

#include "fuzz/Input.h"
#include "fuzz/Texts.h"
#include "host/Text.h"
#include "sets/ComponentList.h"

namespace {

using fuzz::require;
using Pyxis::FileSpecifier;

constexpr int kUntouched = -77;

struct Component {
    bool found = false;
    FileSpecifier file = Pyxis::fileSpecifier("untouched");
    int frame = kUntouched;

    bool operator==(const Component& other) const {
        return found == other.found && frame == other.frame && file.isEqual(other.file);
    }
};

Component read(const kest::ComponentList& list, int index) {
    const kest::Component* found = list.get(index);
    return found != nullptr ? Component{true, found->file, found->frame} : Component();
}

Component read(const FileSpecifier& list, int index) {
    Component component;
    component.found = kest::getComponent(list, index, component.file, component.frame);
    return component;
}

void checkReading(const FileSpecifier& spec) {
    const kest::ComponentList list(spec);
    const int count = list.count();
    require(count >= 0 && kest::countComponents(spec) == count, "both count alike");
    for (const int index : {-1, 0, 1, count - 1, count, count + 1, std::numeric_limits<int>::max(),
                            std::numeric_limits<int>::min()}) {
        const Component component = read(list, index);
        const Component again = read(spec, index);
        require(component.found ? component == again : !again.found || index < 0,
                "both read alike");
        require(!component.found || spec.type() == FileSpecifier::Type::Compound,
                "only a list has components");
        require(!component.found || index < count, "no component behind the last");
        require(again.found || again.frame == kUntouched || again.frame == 0,
                "a component that is not found has no frame");
        require(again.found || again.file.isEqual(Component().file),
                "a component that is not found has no file");
    }
}

/// The list that the text becomes when a component is appended.
FileSpecifier asExtended(const FileSpecifier& spec) {
    Pyxis::StringBuffer narrow;
    Pyxis::StringBuffer::convertString(spec.string(), narrow, Pyxis::CharacterType::Narrow);
    constexpr int kNearlyEmpty = 4;
    return narrow.numDataBytes() > kNearlyEmpty
               ? FileSpecifier(narrow, FileSpecifier::Type::Compound)
               : FileSpecifier();
}

void checkAppending(const FileSpecifier& spec, fuzz::Input& input) {
    const Pyxis::StringBuffer path = fuzz::bufferFrom(input.bytes(), input);
    const FileSpecifier component(path, FileSpecifier::Type::PlainFile);
    const int frame = input.integer();
    FileSpecifier extended = spec;
    kest::appendComponent(component, frame, extended);
    if (extended.isEqual(spec)) {
        require(kest::countComponents(asExtended(spec)) == 0, "a list with components grows");
        return;
    }
    const kest::ComponentList before(asExtended(spec));
    const kest::ComponentList after(extended);
    require(after.count() == before.count() + 1, "one component more");
    for (int i = 0; i < before.count(); ++i) {
        require(read(before, i) == read(after, i), "the others stay as they are");
    }
    const Component last = read(after, before.count());
    require(last.found && last.frame == frame, "the frame is read back");
    require(Pyxis::toUtf8(last.file.string()) == Pyxis::toUtf8(path), "the path is read back");
    checkReading(extended);
}

/// Building a list and appending to one give the same list.
void checkBuilding(fuzz::Input& input) {
    kest::ComponentListBuilder builder;
    FileSpecifier appended;
    while (input.hasChoices() && builder.count() < 16) {
        const FileSpecifier component(fuzz::bufferFrom(input.bytes(), input),
                                      FileSpecifier::Type::PlainFile);
        const int frame = input.integer();
        builder.append(component, frame);
        kest::appendComponent(component, frame, appended);
    }
    require(builder.specifier().isEqual(appended), "building and appending give one list");
    require(kest::countComponents(appended) == builder.count(), "the built list counts right");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    static constexpr FileSpecifier::Type kTypes[] = {
        FileSpecifier::Type::Compound, FileSpecifier::Type::PlainFile,
        static_cast<FileSpecifier::Type>(1), static_cast<FileSpecifier::Type>(-1)};
    const FileSpecifier spec(fuzz::bufferFrom(input.text(), input), input.oneOf(kTypes));
    checkReading(spec);
    checkAppending(spec, input);
    checkBuilding(input);
    return 0;
}
