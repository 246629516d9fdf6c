#include "sets/SetJudge.h"

#include "pyxis/NoThrow.h"
#include "sets/FindCodec.h"

namespace kest {

using Pyxis::FormatDecodability;

SetJudge::SetJudge(const ComponentList& list, double toleranceFactor)
    : list_(list), toleranceFactor_(toleranceFactor), isSettled_(list.count() < 2) {}

std::optional<Judgement> SetJudge::next() {
    if (index_ >= list_.count()) {
        return std::nullopt;
    }
    Judgement judgement;
    judgement.component = list_.get(index_++);
    judge(judgement);
    if (!isSettled_) {
        reduce(judgement.verdict);
    }
    return judgement;
}

FormatDecodability SetJudge::answer() const {
    if (list_.count() < 2) {
        return FormatDecodability::NotThisFormat;
    }
    // So the first two that fail make an undecodable set (compatibility.md, 11).
    return accepted_ < 2 ? FormatDecodability::UndecodableSet : result_;
}

void SetJudge::judge(Judgement& judgement) {
    if (!judgement.component) {
        judgement.verdict = Verdict::NoPath;
        return;
    }
    const Pyxis::ImageFormatCodec* codec = findCodec(judgement.component->file);
    if (codec == nullptr) {
        judgement.verdict = Verdict::Unreadable;
    } else if (criteria_) {
        isFileInSet(*codec, judgement);
    } else {
        initialzeSetCriteria(*codec, judgement);
    }
}

/// Unreadable components are skipped; any other component that is not accepted settles the answer.
void SetJudge::reduce(Verdict verdict) {
    if (verdict == Verdict::Accepted) {
        ++accepted_;
    } else if (verdict != Verdict::Unreadable) {
        result_ = verdict == Verdict::NoPath ? FormatDecodability::UndecodableSet
                                             : FormatDecodability::NotThisFormat;
        isSettled_ = true;
    }
}

bool SetJudge::initialzeSetCriteria(const Pyxis::ImageFormatCodec& codec, Judgement& judgement) {
    if (!getCompareData(codec, judgement)) {
        return false;
    }
    criteria_ = judgement.data;
    return true;
}

bool SetJudge::isFileInSet(const Pyxis::ImageFormatCodec& codec, Judgement& judgement) const {
    if (!getCompareData(codec, judgement)) {
        return false;
    }
    judgement.verdict =
        compareWithCriteria(judgement.data, *criteria_, toleranceFactor_, judgement.off);
    return judgement.verdict == Verdict::Accepted;
}

/// A codec that throws cannot open the component.
bool SetJudge::getCompareData(const Pyxis::ImageFormatCodec& codec, Judgement& judgement) {
    judgement.verdict = Pyxis::answerOr(Verdict::CannotOpen, [&] {
        return measureComponent(*judgement.component, codec, judgement.data);
    });
    return judgement.verdict == Verdict::Accepted;
}

}  // namespace kest
