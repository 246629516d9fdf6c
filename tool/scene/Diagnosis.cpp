#include "tool/scene/Diagnosis.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "host/Text.h"
#include "host/codecs/Readability.h"
#include "sets/SetJudge.h"
#include "tool/scene/Words.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

constexpr std::array<std::string_view, 10> kVerdicts = {
    "accepted",       "no-path",         "unreadable",     "cannot-open",    "no-such-frame",
    "layout-refused", "no-georeference", "layout-differs", "system-differs", "corner-off"};
constexpr std::array<std::string_view, 4> kCorners = {"upper-left", "upper-right", "lower-left",
                                                      "lower-right"};
constexpr std::array<std::string_view, 2> kAxes = {"x", "y"};

std::string layoutText(const kest::InclusionData& data) {
    return std::to_string(data.pixelBits) + "-bit " +
           std::string(pixelModelWord(static_cast<Pyxis::PixelModel>(data.pixelModel)));
}

std::string systemText(const kest::InclusionData& data) {
    return systemName(data.coordinateSystemCode, Pyxis::toUtf8(data.coordinateSystem));
}

std::string cornerText(const kest::CornerDeviation& off) {
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(),
                  "%s corner off by %.6g in %s: %.3g %% of the %s, %.3g %% allowed",
                  std::string(cornerWord(off.corner)).c_str(), off.difference,
                  std::string(axisWord(off.axis)).c_str(), percentOff(off),
                  off.axis == kest::Axis::X ? "width" : "height", kest::kToleranceFactor * 100);
    return text.data();
}

std::string whyNotGeoreferenced(const std::string& path) {
    const std::string unread = Pyxis::unreadGeoreference(Pyxis::fileSpecifier(path));
    return "it is not georeferenced" +
           (unread.empty() ? std::string() : "; " + unread + " beside it is not read");
}

/// Why the component has its verdict; it was compared with `criteria`.
std::string reasonFor(const ComponentDiagnosis& each, const kest::InclusionData& criteria) {
    switch (each.verdict) {
        case Verdict::Accepted:
            break;
        case Verdict::NoPath:
            return "the component names no file";
        case Verdict::Unreadable:
            return whyNotReadable(each.component.path);
        case Verdict::CannotOpen:
            return "its codec cannot open it";
        case Verdict::NoSuchFrame:
            return "there is no frame " + std::to_string(each.component.frame);
        case Verdict::LayoutRefused:
            return "pixels of " + layoutText(each.data) + " are not taken" +
                   (each.data.pixelBits == 16 ? " as floating point" : "");
        case Verdict::NoGeoreference:
            return whyNotGeoreferenced(each.component.path);
        case Verdict::LayoutDiffers:
            return "the pixel layout is " + layoutText(each.data) + ", the set's is " +
                   layoutText(criteria);
        case Verdict::SystemDiffers: {
            const std::string own = systemText(each.data);
            const std::string other = systemText(criteria);
            return "the coordinate system is " + own + ", the set's is " +
                   (own == other ? "another definition of that name" : other);
        }
        case Verdict::CornerOff:
            return cornerText(each.off);
    }
    return {};
}

}  // namespace

std::size_t Diagnosis::count(Verdict verdict) const {
    return static_cast<std::size_t>(
        std::count_if(components.begin(), components.end(),
                      [verdict](const auto& each) { return each.verdict == verdict; }));
}

Diagnosis diagnose(const Session& session, const Pyxis::FileSpecifier& set) {
    Diagnosis diagnosis;
    const kest::ComponentList list(set);
    kest::SetJudge judge = session.codec().judge(list);
    while (const std::optional<kest::Judgement> judged = judge.next()) {
        throwIfInterrupted();
        ComponentDiagnosis each{{}, judged->verdict, {}, judged->data, judged->off};
        if (judged->component != nullptr) {
            each.component = {Pyxis::toUtf8(judged->component->file.string()),
                              judged->component->frame};
        }
        // Only a difference from the reference needs it.
        each.detail =
            reasonFor(each, diagnosis.reference ? diagnosis.components[*diagnosis.reference].data
                                                : each.data);
        if (!diagnosis.reference && each.verdict == Verdict::Accepted) {
            diagnosis.reference = diagnosis.components.size();
        }
        diagnosis.components.push_back(std::move(each));
    }
    diagnosis.answer = judge.answer();
    return diagnosis;
}

std::string_view verdictWord(Verdict verdict) {
    return kVerdicts.at(static_cast<std::size_t>(verdict));
}

double percentOff(const kest::CornerDeviation& off) {
    return off.difference / off.tolerance * kest::kToleranceFactor * 100.0;
}

std::string_view cornerWord(kest::Corner corner) {
    return kCorners.at(static_cast<std::size_t>(corner));
}

std::string_view axisWord(kest::Axis axis) {
    return kAxes.at(static_cast<std::size_t>(axis));
}

void failUndecodable(const Diagnosis& diagnosis) {
    const auto& components = diagnosis.components;
    const std::size_t readable = components.size() - diagnosis.count(Verdict::Unreadable);
    const auto blamed =
        std::find_if(components.begin(), components.end(), [readable](const auto& each) {
            return each.verdict != Verdict::Accepted &&
                   (readable < 2 || each.verdict != Verdict::Unreadable);
        });
    if (blamed != components.end()) {
        const ExitCode code =
            blamed->verdict == Verdict::Unreadable ? ExitCode::CannotRead : ExitCode::NotDecodable;
        const auto position = blamed - components.begin();
        throw Failure(code,
                      blamed->verdict == Verdict::NoPath ? "component " + std::to_string(position)
                                                         : blamed->component.path,
                      blamed->detail);
    }
    if (components.size() == 1) {
        throw Failure(ExitCode::NotDecodable, components.front().component.path, kTooFewBands);
    }
    throw Failure(ExitCode::NotDecodable, kTooFewBands);
}

}  // namespace kestms
