#include "bands/MetadataTextFile.h"

#include <algorithm>

#include "bands/FileName.h"

namespace kest {

void getMetadataTextFile(const Pyxis::FileSpecifier& componentList, Pyxis::FileSpecifier& out) {
    std::u16string name = fileNameOf(componentAt(componentList, 0)).name;
    const std::size_t end = poOrderNumberEnd(name);
    if (!hasPoPrefix(name) || end == name.size()) {
        return;
    }
    name.resize(end + 1);
    name += u"metadata.txt";
    name.resize(std::min(name.size(), platform::kMaxNamePart));
    out.set(nameBuffer(name), Pyxis::FileSpecifier::Type::PlainFile);
}

}  // namespace kest
