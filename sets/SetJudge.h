#pragma once

#include <functional>
#include <optional>

#include "pyxis/ImageFormatCodec.h"
#include "sets/ComponentList.h"
#include "sets/SetMembership.h"

namespace kest {

/// The result for one component.
struct Judgement {
    const Component* component = nullptr;  ///< in the list; null for NoPath
    Verdict verdict = Verdict::Accepted;
    InclusionData data;   ///< as far as it could be measured
    CornerDeviation off;  ///< for CornerOff
};

/// Measures a component through the codec that reads it, and compares it with the criteria unless
/// it is to set them (null). Writes the verdict and what led to it.
using JudgingStep = std::function<void(const Pyxis::ImageFormatCodec& codec, Judgement& judgement,
                                       const InclusionData* criteria)>;

/// Walks a component list once and judges whether its components belong together. The first that
/// can be measured sets the criteria for the others.
///
/// The walk is lazy: it asks the host about a component only when it judges that component. A codec
/// stops at the first component that settles its answer; a caller that explains the answer
/// continues to the end and gets the same one.
class SetJudge {
  public:
    /// `list` must outlive the judge.
    SetJudge(const ComponentList& list, JudgingStep step);

    /// Judges the next component; nothing at the end of the list. Throws std::bad_alloc only.
    std::optional<Judgement> next();

    /// Whether no further component can change the answer.
    bool isSettled() const { return isSettled_; }
    /// The codec's answer if the list ended here: Decodable, NotThisFormat, or UndecodableSet when
    /// fewer than two components were accepted.
    Pyxis::FormatDecodability answer() const;

  private:
    void judge(Judgement& judgement);
    void reduce(Verdict verdict);

    const ComponentList& list_;
    JudgingStep step_;
    int index_ = 0;
    std::optional<InclusionData> criteria_;
    int accepted_ = 0;
    bool isSettled_;
    Pyxis::FormatDecodability result_ = Pyxis::FormatDecodability::Decodable;
};

}  // namespace kest
