#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/commands/ExplanationReport.h"
#include "tool/commands/InfoJson.h"
#include "tool/commands/InputOptions.h"
#include "tool/scene/InputText.h"
#include "tool/scene/OpenedSet.h"
#include "tool/scene/PropertyText.h"
#include "tool/scene/Words.h"
#include "tool/terminal/NumberText.h"
#include "tool/terminal/TerminalText.h"
#include "tool/terminal/TextTable.h"

namespace kestms {
namespace {

using Align = TextTable::Align;
using Fit = TextTable::Fit;

struct InfoOptions {
    std::vector<std::string> inputs;
    bool json = false;
    bool properties = false;
    bool explain = false;
};

std::string headText(const OpenedSet& set) {
    const SetDescription& shared = set.description();
    const auto [width, height] = set.finestSize();
    std::string text = "Reference name:      " + printable(shared.referenceName) + "\n";
    text += "Naming scheme:       " + std::to_string(shared.scheme) + " " +
            std::string(schemeWord(shared.scheme)) + " (" +
            printable(schemeMeaning(shared.scheme)) + ")\n";
    text += "Size:                " + sizeText(width, height) + " pixels on the finest grid\n";
    if (!set.bands().empty() && set.bands().front().georeference) {
        const Georeference& geo = *set.bands().front().georeference;
        text +=
            "Coordinate system:   " + printable(systemName(geo.epsg, *geo.coordinateSystem)) + "\n";
    }
    if (!shared.metadataFile.empty()) {
        text += "Metadata text file:  " + printable(shared.metadataFile) +
                (shared.metadataIsValid ? "\n" : " (cannot be read)\n");
    }
    return text;
}

/// Files of one folder are listed by their names, as paths into archives are long.
std::string filesText(const OpenedSet& set) {
    const std::vector<std::string>& files = set.files();
    const auto folderOf = [](const std::string& path) {
        return path.substr(0, path.rfind('/') + 1);
    };
    std::string folder = folderOf(files.front());
    if (std::any_of(files.begin(), files.end(),
                    [&](const std::string& file) { return folderOf(file) != folder; })) {
        folder.clear();
    }
    std::string text = "\nFiles: " + std::to_string(files.size());
    text += (folder.empty() ? "" : " in " + printable(folder)) + "\n";
    for (const std::string& file : files) {
        text += "  " + printable(file.substr(folder.size())) + "\n";
    }
    return text;
}

std::string bucketsText(const OpenedSet& set, std::size_t columns) {
    TextTable table({{"Bucket", Align::Right},
                     {"Number", Align::Right},
                     {"Name", Align::Left, Fit::KeepStart},
                     {"Bands", Align::Right},
                     {"Pixel size", Align::Left}});
    for (const Bucket& bucket : set.buckets()) {
        table.addRow({std::to_string(bucket.index), std::to_string(bucket.number), bucket.name,
                      std::to_string(bucket.bandCount),
                      sizeText(bucket.pixelWidth, bucket.pixelHeight)});
    }
    return "\n" + table.text(columns);
}

std::string bandsText(const OpenedSet& set, std::size_t columns) {
    TextTable table({{"Frame", Align::Right},
                     {"Number", Align::Right, Fit::LeaveOut},
                     {"Name", Align::Left, Fit::KeepStart},
                     {"Type", Align::Left, Fit::LeaveOut},
                     {"Common name", Align::Left, Fit::LeaveOut},
                     {"Bucket", Align::Right, Fit::LeaveOut},
                     {"Channel", Align::Left, Fit::LeaveOut},
                     {"Pixel size", Align::Left},
                     {"Samples", Align::Left, Fit::LeaveOutLast},
                     {"No-data", Align::Right, Fit::LeaveOutLast},
                     {"File", Align::Left, Fit::KeepEnd},
                     {"File frame", Align::Right, Fit::LeaveOut}});
    for (const Band& band : set.bands()) {
        const auto& geo = band.georeference;
        table.addRow({std::to_string(band.frame), std::to_string(band.number), band.name,
                      std::string(bandTypeWord(band.type)), band.commonName,
                      std::to_string(band.bucket), std::string(channelWord(band.assignment)),
                      geo ? sizeText(geo->pixelWidth, geo->pixelHeight) : "",
                      sampleTypeWord(band.format, band.bits),
                      band.noData ? numberText(*band.noData) : "none", band.componentPath,
                      std::to_string(band.componentFrame)});
    }
    return "\n" + table.text(columns);
}

/// Values of several lines go below their names.
std::string propertyLines(const PropertyText& property) {
    const std::vector<std::string> lines = linesOf(property.value);
    std::string text = "  " + printable(property.name) + ":";
    if (lines.size() <= 1) {
        return text + (lines.empty() ? "" : " " + printable(lines.front())) + "\n";
    }
    for (const std::string& line : lines) {
        text += "\n    " + printable(line);
    }
    return text + "\n";
}

std::string propertiesText(const OpenedSet& set) {
    std::string text;
    for (const Band& band : set.bands()) {
        text += "\nFrame " + std::to_string(band.frame) + "\n";
        for (const PropertyText& property : propertyTexts(*set.openFrame(band.frame))) {
            text += propertyLines(property);
        }
    }
    return text;
}

Json propertiesJson(const OpenedSet& set, const Band& band) {
    Json properties = Json::array();
    for (const PropertyText& property : propertyTexts(*set.openFrame(band.frame))) {
        properties.push_back({{"name", property.name}, {"value", property.value}});
    }
    return properties;
}

void writeInfoJson(Context& context, const OpenedSet& set, const InfoOptions& options) {
    Json json = setJson(set);
    if (options.explain) {
        json["explanation"] = explanationJson(explainScheme(context.session(), set.specifier()));
    }
    writeJson(context.out, json, "bands", set.bands(), [&](const Band& band) {
        Json each = bandJson(band);
        if (options.properties) {
            each["properties"] = propertiesJson(set, band);
        }
        return each;
    });
}

ExitCode info(Context& context, const InfoOptions& options) {
    const OpenedSet set = openSet(context, options.inputs);
    if (options.json) {
        writeInfoJson(context, set, options);
        return ExitCode::Success;
    }
    const std::size_t columns = context.tableColumns();
    context.out << headText(set) << filesText(set) << bucketsText(set, columns)
                << bandsText(set, columns);
    if (options.explain) {
        context.out << "\n"
                    << explanationText(explainScheme(context.session(), set.specifier()), columns);
    }
    if (options.properties) {
        context.out << propertiesText(set);
    }
    return ExitCode::Success;
}

}  // namespace

void addInfoCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("info", "Describe a set and its bands");
    auto options = std::make_shared<InfoOptions>();
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command->add_flag("--json", options->json, "Write JSON");
    command->add_flag("--properties", options->properties,
                      "Write every property of every frame as well");
    command->add_flag("--explain", options->explain, "Tell which rule makes the naming scheme");
    addInputOptions(*command, context);
    command->footer(
        "Examples:\n"
        "  kestms info scene.xml\n"
        "  kestms info scene/*.TIF --explain\n"
        "  kestms info scene/ --json --properties\n"
        "  kestms --language ja info scene/");
    runWhenChosen(*command, context, info, options);
}

}  // namespace kestms
