// Whether components form a set, and which of them can be read.

#include <optional>

#include "codec/KestMultispectralCodec.h"
#include "pyxis/NoThrow.h"
#include "sets/ComponentList.h"
#include "sets/FindCodec.h"
#include "sets/SetJudge.h"

using Decodability = Pyxis::FormatDecodability;

namespace {

bool isCompound(const Pyxis::FileSpecifier& file) {
    return file.type() == Pyxis::FileSpecifier::Type::Compound;
}

}  // namespace

Decodability KestMultispectralCodec::isDecodableFile(const Pyxis::FileSpecifier& file,
                                                     Pyxis::FindFileInterface* /*finder*/) const {
    if (!isCompound(file)) {
        return Decodability::NotThisFormat;
    }
    // On allocation failure the list counts as unreadable.
    return Pyxis::answerOr(Decodability::UndecodableSet, [&] {
        const kest::ComponentList components(file);
        kest::SetJudge judge(components, toleranceFactor_);
        while (!judge.isSettled() && judge.next()) {
        }
        return judge.answer();
    });
}

bool KestMultispectralCodec::purifyFileSet(Pyxis::FileSpecifier& file) const {
    if (!isCompound(file)) {
        return false;
    }
    return Pyxis::answerOr(false, [&] {
        const kest::ComponentList components(file);
        if (components.count() < 2) {
            return false;
        }
        kest::ComponentListBuilder readable;
        for (int i = 0; i < components.count(); ++i) {
            const std::optional<kest::Component> component = components.get(i);
            if (!component) {
                return false;
            }
            if (kest::findCodec(component->file) != nullptr) {
                readable.append(component->file, component->frame);
            }
        }
        if (readable.count() < 2) {
            return false;
        }
        file.assign(readable.specifier());
        return true;
    });
}
