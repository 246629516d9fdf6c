// The codec's part in deciding whether components form a set, and in tidying their list.

#include "codec/KestMultispectralCodec.h"
#include "properties/HostBoundary.h"
#include "sets/ComponentList.h"
#include "sets/FindCodec.h"

using Codec = KestMultispectralCodec;
using Decodability = Pyxis::FormatDecodability;

namespace {

bool isCompound(const Pyxis::FileSpecifier& file) {
    return file.type() == Pyxis::FileSpecifier::Type::Compound;
}

}  // namespace

Decodability Codec::isDecodableFile(const Pyxis::FileSpecifier& file,
                                    Pyxis::FindFileInterface* /*finder*/) const {
    if (!isCompound(file)) {
        return Decodability::NotThisFormat;
    }
    // A list that memory does not suffice to read is one that cannot be read.
    return kest::answerOr(Decodability::UndecodableSet,
                          [&] { return decodabilityOf(kest::ComponentList(file)); });
}

Decodability Codec::decodabilityOf(const kest::ComponentList& components) const {
    if (components.count() < 2) {
        return Decodability::NotThisFormat;
    }
    Decodability result = Decodability::Decodable;
    InclusionData criteria;
    int accepted = 0;
    for (int i = 0; i < components.count(); ++i) {
        Pyxis::FileSpecifier component;
        int frame = 0;
        if (!components.get(i, component, frame)) {
            result = Decodability::UndecodableSet;
            break;
        }
        const Pyxis::ImageFormatCodec* codec = kest::findCodec(component);
        if (codec == nullptr) {
            continue;
        }
        const bool belongs = accepted == 0 ? initialzeSetCriteria(component, frame, codec, criteria)
                                           : isFileInSet(component, frame, codec, criteria);
        if (!belongs) {
            result = Decodability::NotThisFormat;
            break;
        }
        ++accepted;
    }
    return accepted < 2 ? Decodability::UndecodableSet : result;
}

bool Codec::purifyFileSet(Pyxis::FileSpecifier& file) const {
    if (!isCompound(file)) {
        return false;
    }
    return kest::answerOr(false, [&] {
        const kest::ComponentList components(file);
        if (components.count() < 2) {
            return false;
        }
        kest::ComponentListBuilder readable;
        for (int i = 0; i < components.count(); ++i) {
            Pyxis::FileSpecifier component;
            int frame = 0;
            if (!components.get(i, component, frame)) {
                return false;
            }
            if (kest::findCodec(component) != nullptr) {
                readable.append(component, frame);
            }
        }
        if (readable.count() < 2) {
            return false;
        }
        file.assign(readable.specifier());
        return true;
    });
}

bool Codec::initialzeSetCriteria(const Pyxis::FileSpecifier& file, int frame,
                                 const Pyxis::ImageFormatCodec* codec,
                                 InclusionData& criteria) const {
    return getCompareData(file, frame, codec, criteria);
}

bool Codec::isFileInSet(const Pyxis::FileSpecifier& file, int frame,
                        const Pyxis::ImageFormatCodec* codec, const InclusionData& criteria) const {
    InclusionData candidate;
    if (!getCompareData(file, frame, codec, candidate)) {
        return false;
    }
    const auto finding = kest::compareWithCriteria(candidate, criteria, toleranceFactor_);
    return finding.fault == kest::MembershipFault::None;
}

bool Codec::getCompareData(const Pyxis::FileSpecifier& file, int frame,
                           const Pyxis::ImageFormatCodec* codec, InclusionData& data) const {
    return kest::answerOr(false, [&] {
        return kest::measureComponent(file, frame, codec, data) == kest::MeasureFault::None;
    });
}
