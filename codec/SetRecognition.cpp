// Whether components form a set, and which of them can be read.

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
        kest::SetJudge judge = this->judge(components);
        while (!judge.isSettled() && judge.next()) {
        }
        return judge.answer();
    });
}

kest::SetJudge KestMultispectralCodec::judge(const kest::ComponentList& list) const {
    return {list, [this](const auto& codec, auto& judgement, const InclusionData* criteria) {
                return criteria == nullptr ? initialzeSetCriteria(codec, judgement)
                                           : isFileInSet(codec, judgement, *criteria);
            }};
}

bool KestMultispectralCodec::initialzeSetCriteria(const Pyxis::ImageFormatCodec& codec,
                                                  kest::Judgement& judgement) const {
    return getCompareData(codec, judgement);
}

bool KestMultispectralCodec::isFileInSet(const Pyxis::ImageFormatCodec& codec,
                                         kest::Judgement& judgement,
                                         const InclusionData& criteria) const {
    if (!getCompareData(codec, judgement)) {
        return false;
    }
    judgement.verdict =
        kest::compareWithCriteria(judgement.data, criteria, toleranceFactor_, judgement.off);
    return judgement.verdict == kest::Verdict::Accepted;
}

/// A codec that throws cannot open the component.
bool KestMultispectralCodec::getCompareData(const Pyxis::ImageFormatCodec& codec,
                                            kest::Judgement& judgement) const {
    judgement.verdict = Pyxis::answerOr(kest::Verdict::CannotOpen, [&] {
        return kest::measureComponent(*judgement.component, codec, judgement.data);
    });
    return judgement.verdict == kest::Verdict::Accepted;
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
            const kest::Component* component = components.get(i);
            if (component == nullptr) {
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
