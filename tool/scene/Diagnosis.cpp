#include "tool/scene/Diagnosis.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "host/Text.h"
#include "host/codecs/Readability.h"
#include "pyxis/FileReadDescriptor.h"
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

std::string cornerText(const kest::MembershipFinding& finding) {
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(),
                  "%s corner off by %.6g in %s: %.3g %% of the %s, %.3g %% allowed",
                  std::string(cornerWord(finding.corner)).c_str(), finding.difference,
                  std::string(axisWord(finding.axis)).c_str(), percentOff(finding),
                  finding.axis == kest::Axis::X ? "width" : "height", kest::kToleranceFactor * 100);
    return text.data();
}

std::string whyNotGeoreferenced(const std::string& path) {
    const std::string unread = Pyxis::unreadGeoreference(Pyxis::fileSpecifier(path));
    return "it is not georeferenced" +
           (unread.empty() ? std::string() : "; " + unread + " beside it is not read");
}

void explainMeasureFault(kest::MeasureFault fault, ComponentDiagnosis& result) {
    const int frame = result.component.frame;
    switch (fault) {
        case kest::MeasureFault::None:
            break;
        case kest::MeasureFault::CannotOpenFile:
            result.verdict = Verdict::CannotOpen;
            result.detail = "its codec cannot open it";
            break;
        case kest::MeasureFault::NoSuchFrame:
            result.verdict = Verdict::NoSuchFrame;
            result.detail = "there is no frame " + std::to_string(frame);
            break;
        case kest::MeasureFault::PixelLayoutRefused:
            result.verdict = Verdict::LayoutRefused;
            result.detail = "pixels of " + layoutText(result.data) + " are not taken" +
                            (result.data.pixelBits == 16 ? " as floating point" : "");
            break;
        case kest::MeasureFault::NoProperties:
        case kest::MeasureFault::NoGeoreference:
            result.verdict = Verdict::NoGeoreference;
            result.detail = whyNotGeoreferenced(result.component.path);
            break;
    }
}

void explainMembership(const kest::InclusionData& criteria, ComponentDiagnosis& result) {
    result.finding = kest::compareWithCriteria(result.data, criteria, kest::kToleranceFactor);
    switch (result.finding.fault) {
        case kest::MembershipFault::None:
            break;
        case kest::MembershipFault::PixelLayoutDiffers:
            result.verdict = Verdict::LayoutDiffers;
            result.detail = "the pixel layout is " + layoutText(result.data) + ", the set's is " +
                            layoutText(criteria);
            break;
        case kest::MembershipFault::CoordinateSystemDiffers: {
            const std::string own = systemText(result.data);
            const std::string other = systemText(criteria);
            result.verdict = Verdict::SystemDiffers;
            result.detail = "the coordinate system is " + own + ", the set's is " +
                            (own == other ? "another definition of that name" : other);
            break;
        }
        case kest::MembershipFault::CornerOff:
            result.verdict = Verdict::CornerOff;
            result.detail = cornerText(result.finding);
            break;
    }
}

ComponentDiagnosis examine(const Component& component, const kest::InclusionData* criteria) {
    ComponentDiagnosis result;
    result.component = component;
    if (component.path.empty()) {
        result.verdict = Verdict::NoPath;
        result.detail = "the component names no file";
        return result;
    }
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(component.path);
    const Pyxis::ImageFormatCodec* codec = nullptr;
    if (Pyxis::FileReadDescriptor::findImageFileCodec(file, codec) !=
        Pyxis::FormatDecodability::Decodable) {
        result.verdict = Verdict::Unreadable;
        result.detail = whyNotReadable(component.path);
        return result;
    }
    explainMeasureFault(kest::measureComponent(file, component.frame, codec, result.data), result);
    if (result.verdict == Verdict::Accepted && criteria != nullptr) {
        explainMembership(*criteria, result);
    }
    return result;
}

}  // namespace

std::size_t Diagnosis::count(Verdict verdict) const {
    return static_cast<std::size_t>(
        std::count_if(components.begin(), components.end(),
                      [verdict](const auto& each) { return each.verdict == verdict; }));
}

Diagnosis diagnose(Session& session, const Pyxis::FileSpecifier& set) {
    Diagnosis diagnosis;
    diagnosis.answer = session.codec().isDecodableFile(set, &session.finder());
    for (const Component& component : componentsOf(set)) {
        throwIfInterrupted();
        const kest::InclusionData* criteria =
            diagnosis.reference ? &diagnosis.components[*diagnosis.reference].data : nullptr;
        diagnosis.components.push_back(examine(component, criteria));
        if (!diagnosis.reference && diagnosis.components.back().verdict == Verdict::Accepted) {
            diagnosis.reference = diagnosis.components.size() - 1;
        }
    }
    return diagnosis;
}

std::string_view verdictWord(Verdict verdict) {
    return kVerdicts.at(static_cast<std::size_t>(verdict));
}

double percentOff(const kest::MembershipFinding& finding) {
    return finding.difference / finding.tolerance * kest::kToleranceFactor * 100.0;
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
