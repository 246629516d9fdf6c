#include <ostream>
#include <string>
#include <vector>

#include "bands/NamingScheme.h"
#include "tool/actions/RasterActions.h"
#include "tool/raster/OutputFile.h"
#include "tool/raster/OutputFormat.h"
#include "tool/raster/StacItem.h"
#include "tool/scene/MetadataFile.h"
#include "tool/scene/OpenedSet.h"
#include "tool/terminal/Json.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

/// The day that ends the name of a Landsat 7 product, "2001-09-08"; empty for another set.
std::string dayInReferenceName(const SetDescription& about) {
    constexpr std::size_t kDigits = 8;
    const std::string& name = about.referenceName;
    if ((about.scheme != kest::SchemeLandsat7 && about.scheme != kest::SchemeLandsat7Fast) ||
        name.size() < kDigits) {
        return {};
    }
    const std::string digits = name.substr(name.size() - kDigits);
    return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6);
}

TimeSpan timeOf(const StacOptions& options, const std::string& name, const std::string& day,
                const std::string& metadataFile) {
    const auto time = options.time.empty() ? acquisitionTime(name, day, metadataFile)
                                           : parseTimeSpan(options.time);
    if (!time) {
        throw options.time.empty()
            ? Failure(ExitCode::Usage, name,
                      "neither its name nor a metadata file has its date; give it with --datetime")
            : Failure(ExitCode::Usage, "--datetime",
                      options.time +
                          " is neither a day (2018-06-29), a time "
                          "(2018-06-29T00:02:41Z) nor two of them (FROM/TO)");
    }
    return *time;
}

StacScene sceneOf(Context& context, const OpenedSet& set, const StacOptions& options) {
    std::vector<std::string> files;
    for (const Band& band : set.bands()) {
        files.push_back(band.componentPath);
    }
    StacScene scene;
    scene.id = set.description().referenceName;
    std::string day = dayInReferenceName(set.description());
    const std::vector<Scene> known = scenesAmong(context.session(), files);
    if (known.size() == 1 && !known.front().product.empty()) {
        scene.id = known.front().name;
        scene.title = known.front().productName;
        day = known.front().date;
    }
    const std::string beside = metadataFileBeside(scene.id, files);
    scene.time = timeOf(options, scene.id, day, beside);
    // The plug-in's own schemes have metadata files of other names.
    const std::string& ofScheme = set.description().metadataFile;
    scene.metadataFile = ofScheme.empty() ? beside : ofScheme;
    scene.layers = context.layersAside;
    return scene;
}

}  // namespace

ExitCode writeStacItem(Context& context, const StacOptions& options) {
    const bool toOutput = isStandardOutput(options.output);
    if (!toOutput) {
        requireExtension(options.output, OutputFormat::StacItem);
    }
    context.listsLayers = true;
    const OpenedSet set = openSet(context, options.inputs);
    const StacScene scene = sceneOf(context, set, options);
    // An item read from a pipe may be stored anywhere.
    const Json item =
        stacItem(set, scene, {toOutput ? "" : options.output, options.absolute || toOutput});
    if (toOutput) {
        writeJson(context.out, item);
        return ExitCode::Success;
    }
    writeOutput(options.output, {context.inputs, options.overwrite}, jsonText(item) + "\n");
    context.out << printable(options.output) << "\n";
    return ExitCode::Success;
}

}  // namespace kestms
