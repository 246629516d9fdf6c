#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/scene/Inputs.h"
#include "tool/scene/OpenedSet.h"
#include "tool/scene/Scenes.h"
#include "tool/scene/Words.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/Json.h"
#include "tool/terminal/NumberText.h"
#include "tool/terminal/TextTable.h"

namespace kestms {
namespace {

struct ScenesOptions {
    std::vector<std::string> paths;
    bool json = false;
};

/// A scene, and its bands as the codec opens them.
struct Examined {
    Scene scene;
    std::optional<OpenedSet> set;
    std::string reason;  ///< why there is no set
};

/// Sets aside the files of bands that the set does not have.
void addUnreadable(const OpenedSet& set, Scene& scene) {
    const std::set<std::string_view> read(set.files().begin(), set.files().end());
    for (const std::string& path : scene.files) {
        if (!read.contains(path)) {
            scene.setAside.push_back({path, "unreadable", false});
        }
    }
}

Examined examine(Context& context, const Scene& scene) {
    throwIfInterrupted();
    Examined examined{scene, std::nullopt, {}};
    try {
        examined.set.emplace(context.session(), setOf(componentsIn(context, scene.files)));
    } catch (const Failure& failure) {
        if (failure.code() == ExitCode::Interrupted) {
            throw;
        }
        examined.reason = scene.files.empty() ? "no bands" : failure.what();
    }
    if (examined.set) {
        addUnreadable(*examined.set, examined.scene);
    }
    if (examined.set && scene.product.empty()) {
        const SetDescription& shared = examined.set->description();
        examined.scene.productName = schemeWord(shared.scheme);
        examined.scene.name = shared.referenceName;
    }
    return examined;
}

std::string pixelSizes(const OpenedSet& set) {
    std::string text;
    for (const Bucket& bucket : set.buckets()) {
        text += (text.empty() ? "" : ", ") + sizeText(bucket.pixelWidth, bucket.pixelHeight);
    }
    return text;
}

std::string scenesText(const std::vector<Examined>& scenes, std::size_t columns) {
    using Align = TextTable::Align;
    using Fit = TextTable::Fit;
    TextTable table({{"Scene", Align::Left, Fit::KeepStart},
                     {"Product", Align::Left, Fit::KeepStart},
                     {"Date", Align::Left, Fit::LeaveOut},
                     {"Bands", Align::Right},
                     {"Pixel sizes", Align::Left, Fit::LeaveOut},
                     {"Set aside", Align::Left, Fit::KeepStart},
                     {"Decodable", Align::Left, Fit::KeepStart}});
    std::map<std::pair<std::string_view, std::string_view>, int> alike;
    for (const Examined& each : scenes) {
        ++alike[{each.scene.name, each.scene.productName}];
    }
    for (const Examined& each : scenes) {
        const bool isAlone = alike[{each.scene.name, each.scene.productName}] == 1;
        table.addRow({isAlone ? each.scene.name : each.scene.name + " (" + each.scene.folder + ")",
                      each.scene.productName, each.scene.date,
                      std::to_string(each.set ? each.set->bands().size() : each.scene.files.size()),
                      each.set ? pixelSizes(*each.set) : "", summaryOf(each.scene.setAside),
                      each.set ? "yes" : "no: " + each.reason});
    }
    return table.text(columns);
}

Json bandsJson(const OpenedSet& set) {
    Json bands = Json::array();
    for (const Band& band : set.bands()) {
        bands.push_back({{"name", band.name},
                         {"commonName", textOrNull(band.commonName)},
                         {"file", band.componentPath},
                         {"fileFrame", band.componentFrame}});
    }
    return bands;
}

Json sceneJson(const Examined& each) {
    Json setAside = Json::array();
    for (const SetAside& file : each.scene.setAside) {
        setAside.push_back({{"file", file.path}, {"reason", file.reason}});
    }
    Json sizes = Json::array();
    if (each.set) {
        for (const Bucket& bucket : each.set->buckets()) {
            sizes.push_back({bucket.pixelWidth, bucket.pixelHeight});
        }
    }
    return {{"name", each.scene.name},
            {"product", textOrNull(each.scene.product)},
            {"productName", textOrNull(each.scene.productName)},
            {"date", textOrNull(each.scene.date)},
            {"files", each.scene.files},
            {"bands", each.set ? bandsJson(*each.set) : Json::array()},
            {"pixelSizes", std::move(sizes)},
            {"setAside", std::move(setAside)},
            {"decodable", each.set.has_value()},
            {"reason", textOrNull(each.reason)}};
}

ExitCode scenes(Context& context, const ScenesOptions& options) {
    const SceneList list = readScenes(options.paths, context);
    const ExitCode code = list.isWhole ? ExitCode::Success : ExitCode::CannotRead;
    std::vector<Examined> examined;
    for (const Scene& scene : list.scenes) {
        examined.push_back(examine(context, scene));
    }
    if (examined.empty()) {
        return code;
    }
    if (!options.json) {
        context.out << scenesText(examined, context.tableColumns());
        return code;
    }
    writeJson(context.out, documentOf("kestms scenes", 1), "scenes", examined, sceneJson);
    return code;
}

}  // namespace

void addScenesCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<ScenesOptions>();
    CLI::App* command = app.add_subcommand("scenes", "List the scenes in folders and among files");
    command
        ->add_option("PATH", options->paths,
                     "Folders (with all below them), archives, files, globs,\n"
                     "or the metadata files of scenes")
        ->required();
    command->add_flag("--json", options->json, "Write JSON");
    command->footer(
        "Files of one product and one scene name are a scene. Quality, mask, angle and other\n"
        "layers are set aside, and so is what is part of no scene. Rasters of no known product\n"
        "are taken folder by folder.\n"
        "\n"
        "Examples:\n"
        "  kestms scenes downloads/\n"
        "  kestms scenes LC08_*/ S2A_*.SAFE/ --json");
    runWhenChosen(*command, context, scenes, options);
}

}  // namespace kestms
