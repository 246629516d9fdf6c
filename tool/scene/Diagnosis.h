#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pyxis/ImageFormatCodec.h"
#include "sets/SetMembership.h"
#include "tool/scene/Components.h"
#include "tool/scene/Session.h"

namespace kestms {

/// The reason for a set of one.
inline constexpr const char* kTooFewBands = "a set needs at least two bands";

using kest::Verdict;

struct ComponentDiagnosis {
    Component component;  ///< without a path for NoPath
    Verdict verdict = Verdict::Accepted;
    std::string detail;  ///< the reason in words; empty for Accepted
    kest::InclusionData data;
    kest::CornerDeviation off;  ///< for CornerOff
};

struct Diagnosis {
    /// The codec's own answer.
    Pyxis::FormatDecodability answer = Pyxis::FormatDecodability::Undetermined;
    std::vector<ComponentDiagnosis> components;
    /// The component with which the others are compared: the first that can be measured.
    std::optional<std::size_t> reference;

    bool isDecodable() const { return answer == Pyxis::FormatDecodability::Decodable; }
    /// Components with that verdict.
    std::size_t count(Verdict verdict) const;
};

/// Judges the set as the codec does, but beyond the component that settles the answer, and explains
/// every verdict. The session keeps the component codecs registered.
Diagnosis diagnose(const Session& session, const Pyxis::FileSpecifier& set);

/// A stable word for the verdict ("layout-differs").
std::string_view verdictWord(Verdict verdict);

/// Per cent of the reference's extent by which the corner is off.
double percentOff(const kest::CornerDeviation& off);
/// "upper-left" and so on; "x" or "y".
std::string_view cornerWord(kest::Corner corner);
std::string_view axisWord(kest::Axis axis);

/// Ends the command with the reason why the set is not decodable.
[[noreturn]] void failUndecodable(const Diagnosis& diagnosis);

}  // namespace kestms
