#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "host/Text.h"
#include "tool/commands/Commands.h"
#include "tool/commands/ExplanationReport.h"
#include "tool/commands/InputOptions.h"
#include "tool/commands/PlaceJson.h"
#include "tool/scene/Diagnosis.h"
#include "tool/scene/Inputs.h"
#include "tool/scene/Misfits.h"
#include "tool/scene/Words.h"
#include "tool/terminal/Json.h"
#include "tool/terminal/TextTable.h"

namespace kestms {
namespace {

struct CheckOptions {
    std::vector<std::string> inputs;
    bool json = false;
    bool explain = false;
};

/// The components that a codec reads; they determine the naming scheme.
Explanation explainReadable(Session& session, const Diagnosis& diagnosis) {
    std::vector<Component> readable;
    for (const ComponentDiagnosis& each : diagnosis.components) {
        if (each.verdict != Verdict::Unreadable && each.verdict != Verdict::NoPath) {
            readable.push_back(each.component);
        }
    }
    return explainScheme(session, setOf(readable));
}

std::string summary(const Diagnosis& diagnosis) {
    return std::string(diagnosis.isDecodable() ? "Decodable: " : "Not decodable: ") +
           std::to_string(diagnosis.count(Verdict::Accepted)) + " of " +
           std::to_string(diagnosis.components.size()) + " components belong together, " +
           std::to_string(diagnosis.count(Verdict::Unreadable)) + " cannot be read.\n";
}

std::string reportText(const Diagnosis& diagnosis, std::size_t columns) {
    using Align = TextTable::Align;
    TextTable table({{"File", Align::Left, TextTable::Fit::KeepEnd},
                     {"Frame", Align::Right},
                     {"Verdict", Align::Left},
                     {"Reason", Align::Left, TextTable::Fit::KeepStart}});
    for (std::size_t i = 0; i < diagnosis.components.size(); ++i) {
        const ComponentDiagnosis& each = diagnosis.components[i];
        const bool isReference = diagnosis.reference == i;
        table.addRow({each.component.path, std::to_string(each.component.frame),
                      std::string(verdictWord(each.verdict)),
                      isReference ? "the others are compared with this one" : each.detail});
    }
    return table.text(columns) + summary(diagnosis);
}

bool wasMeasured(Verdict verdict) {
    return verdict == Verdict::Accepted || verdict == Verdict::LayoutDiffers ||
           verdict == Verdict::SystemDiffers || verdict == Verdict::CornerOff;
}

Json componentJson(const ComponentDiagnosis& each) {
    Json component = {{"file", each.component.path},
                      {"fileFrame", each.component.frame},
                      {"verdict", verdictWord(each.verdict)},
                      {"reason", textOrNull(each.detail)}};
    if (wasMeasured(each.verdict)) {
        const auto model = static_cast<Pyxis::PixelModel>(each.data.pixelModel);
        component["bitsPerPixel"] = each.data.pixelBits;
        component["pixelModel"] = pixelModelWord(model);
        component["coordinateSystem"] =
            systemJson(each.data.coordinateSystemCode, Pyxis::toUtf8(each.data.coordinateSystem));
        component["corners"] = cornersJson(each.data);
    }
    if (each.verdict == Verdict::CornerOff) {
        component["cornerOff"] = {{"corner", cornerWord(each.off.corner)},
                                  {"axis", axisWord(each.off.axis)},
                                  {"units", each.off.difference},
                                  {"allowedUnits", each.off.tolerance},
                                  {"percent", percentOff(each.off)},
                                  {"allowedPercent", kest::kToleranceFactor * 100.0}};
    }
    return component;
}

Json reportJson(const Diagnosis& diagnosis) {
    Json json = documentOf("kestms check", 1);
    json["decodable"] = diagnosis.isDecodable();
    json["answer"] = static_cast<int>(diagnosis.answer);
    json["reference"] = diagnosis.reference ? Json(*diagnosis.reference) : Json(nullptr);
    return json;
}

ExitCode check(Context& context, const CheckOptions& options) {
    const Pyxis::FileSpecifier set =
        withoutMisfits(context, readSet(options.inputs, context, MissingFile::Keep));
    const Diagnosis diagnosis = diagnose(context.session(), set);
    if (options.json) {
        Json report = reportJson(diagnosis);
        if (options.explain) {
            report["explanation"] = explanationJson(explainReadable(context.session(), diagnosis));
        }
        writeJson(context.out, report, "components", diagnosis.components, componentJson);
    } else {
        context.out << reportText(diagnosis, context.tableColumns());
        if (options.explain) {
            context.out << "\n"
                        << explanationText(explainReadable(context.session(), diagnosis),
                                           context.tableColumns());
        }
    }
    if (!diagnosis.isDecodable()) {
        failUndecodable(diagnosis);
    }
    return ExitCode::Success;
}

}  // namespace

void addCheckCommand(CLI::App& app, Context& context) {
    CLI::App* command =
        app.add_subcommand("check", "Tell whether files make a set, and why not, one by one");
    auto options = std::make_shared<CheckOptions>();
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command->add_flag("--json", options->json, "Write JSON");
    command->add_flag("--explain", options->explain, "Tell which rule makes the naming scheme");
    addInputOptions(*command, context);
    command->footer(
        "Examples:\n"
        "  kestms check scene.xml\n"
        "  kestms check scene/*.TIF --json\n"
        "\n"
        "The exit code is 0 for a set that can be decoded, else 1, or 3 when too few of its files\n"
        "can be read.");
    runWhenChosen(*command, context, check, options);
}

}  // namespace kestms
