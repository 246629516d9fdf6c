#pragma once

#include <optional>

#include "pyxis/ImageFormatCodec.h"
#include "sets/ComponentList.h"
#include "sets/SetMembership.h"

namespace kest {

/// The result for one component.
struct Judgement {
    std::optional<Component> component;  ///< nothing for NoPath
    Verdict verdict = Verdict::Accepted;
    InclusionData data;   ///< as far as it could be measured
    CornerDeviation off;  ///< for CornerOff
};

/// Walks a component list once and judges whether its components belong together. The first that
/// can be measured sets the criteria for the others.
///
/// The walk is lazy: it asks the host about a component only when it judges that component. A codec
/// stops at the first component that settles its answer; a caller that explains the answer
/// continues to the end and gets the same one.
class SetJudge {
  public:
    /// `list` must outlive the judge. `toleranceFactor` is the fraction of the criteria's extent
    /// by which a corner may be off.
    SetJudge(const ComponentList& list, double toleranceFactor);

    /// Judges the next component; nothing at the end of the list. Throws std::bad_alloc only.
    std::optional<Judgement> next();

    /// Whether no further component can change the answer.
    bool isSettled() const { return isSettled_; }
    /// The codec's answer if the list ended here: Decodable, NotThisFormat, or UndecodableSet when
    /// fewer than two components were accepted.
    Pyxis::FormatDecodability answer() const;

  private:
    // These names, spelling included, are known from stack traces (compatibility.md, 14).
    bool initialzeSetCriteria(const Pyxis::ImageFormatCodec& codec, Judgement& judgement);
    bool isFileInSet(const Pyxis::ImageFormatCodec& codec, Judgement& judgement) const;
    static bool getCompareData(const Pyxis::ImageFormatCodec& codec, Judgement& judgement);
    void judge(Judgement& judgement);
    void reduce(Verdict verdict);

    const ComponentList& list_;
    double toleranceFactor_;
    int index_ = 0;
    std::optional<InclusionData> criteria_;
    int accepted_ = 0;
    bool isSettled_;
    Pyxis::FormatDecodability result_ = Pyxis::FormatDecodability::Decodable;
};

}  // namespace kest
