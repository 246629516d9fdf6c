#include "sets/SetJudge.h"

#include <utility>

#include "sets/FindCodec.h"

namespace kest {

using Pyxis::FormatDecodability;

SetJudge::SetJudge(const ComponentList& list, JudgingStep step)
    : list_(list), step_(std::move(step)), isSettled_(list.count() < 2) {}

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
    if (judgement.component == nullptr) {
        judgement.verdict = Verdict::NoPath;
        return;
    }
    const Pyxis::ImageFormatCodec* codec = findCodec(judgement.component->file);
    if (codec == nullptr) {
        judgement.verdict = Verdict::Unreadable;
        return;
    }
    step_(*codec, judgement, criteria_ ? &*criteria_ : nullptr);
    if (!criteria_ && judgement.verdict == Verdict::Accepted) {
        criteria_ = judgement.data;
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

}  // namespace kest
