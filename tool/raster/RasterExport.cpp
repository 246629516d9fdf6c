#include "tool/raster/RasterExport.h"

#include <filesystem>
#include <memory>
#include <ostream>

#include "host/codecs/Places.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/raster/HiddenPixels.h"
#include "tool/raster/LayerStyle.h"
#include "tool/scene/OpenedSet.h"
#include "tool/scene/PathParts.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

using Files = std::vector<std::unique_ptr<OutputFile>>;

/// GDAL takes some 80 kB for each band of an output, and time that grows faster than their number.
constexpr std::size_t kMostBands = 2048;

/// Styles of other programs list the symbols of classes.
constexpr std::size_t kLongestStyle = std::size_t{16} << 20U;

std::vector<OutputRaster> rastersOf(const Context& context, const OpenedSet& set,
                                    const ExportRequest& request, const std::string& path) {
    const std::vector<Band> bands = bandsOf(context, set, request);
    if (bands.size() > kMostBands) {
        throw Failure(ExitCode::Usage, "--bands",
                      std::to_string(bands.size()) + " bands are too many for one output; choose " +
                          std::to_string(kMostBands) + " at most");
    }
    return layOut(bands, path, request.grid, requestedPart(bands, request.grid));
}

/// A line to print after the progress bar.
struct Note {
    std::string path;
    std::string text;
};

/// What the request does to the pixels.
std::vector<std::string> requestNotes(const OutputRaster& raster, const ExportRequest& request) {
    std::vector<std::string> notes = {resamplingNote(raster, request.resampling), cutNote(raster)};
    if (request.noData) {
        notes.push_back(hiddenPixelsNote(raster, request.resampling, *request.noData));
    }
    std::erase(notes, "");
    return notes;
}

/// What is to be done once the rasters are written.
struct Written {
    std::vector<Note> notes;
    std::vector<std::string> styles;  ///< of each raster; may be empty
};

Written writeAll(const Context& context, const ExportRequest& request,
                 const VirtualRasterOptions& options, const std::vector<OutputRaster>& rasters,
                 const Files& files, const RasterWriter& write) {
    Written written;
    ProgressBar bar(context.err, !context.quiet && isTerminal(context.err));
    for (std::size_t i = 0; i < rasters.size(); ++i) {
        const auto count = static_cast<double>(rasters.size());
        const auto progress = [&bar, i, count](double part) {
            bar.show((static_cast<double>(i) + part) / count);
        };
        const VirtualRaster pixels(rasters[i], options);
        const auto note = [&](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
                written.notes.push_back({rasters[i].path, text});
            }
        };
        note(requestNotes(rasters[i], request));
        note(pixels.leftOut());
        note(write(rasters[i], pixels, *files[i], progress));
        written.styles.push_back(request.withStyle ? layerStyle(pixels.dataset(), rasters[i].path)
                                                   : "");
    }
    return written;
}

VirtualRasterOptions optionsOf(const ExportRequest& request, VirtualRasterOptions::Paths paths) {
    VirtualRasterOptions options;
    options.paths = paths;
    options.resampling = request.resampling;
    options.noData = request.noData;
    return options;
}

/// A style that the user saved stays, since no argument has named it, and so does that of another
/// raster. One of this file is replaced or removed with it.
void addStyle(const Context& context, const OutputRaster& raster, const std::string& style,
              Files& files, std::vector<Note>& notes) {
    const std::string path = layerStylePath(raster.path);
    std::error_code error;
    const bool isThere = std::filesystem::exists(path, error);
    if (isThere) {
        // What is no style of this program's, whatever it is, stays.
        const auto existing = Pyxis::contentOfSideFile(path, kLongestStyle);
        if (!existing || !isLayerStyleOf(*existing, raster.path)) {
            if (!existing || !showTheSame(*existing, style)) {
                notes.push_back({path, "the style that is there stays, and QGIS shows " +
                                           std::string(nameOf(raster.path)) + " by it"});
            }
            return;
        }
    } else if (style.empty()) {
        return;
    }
    files.push_back(std::make_unique<OutputFile>(path, OutputRules{context.inputs, isThere}));
    if (style.empty()) {
        files.back()->remove();  // it is that of the raster before
    } else {
        files.back()->write(style);
    }
}

}  // namespace

std::vector<Band> bandsOf(const Context& context, const OpenedSet& set,
                          const ExportRequest& request) {
    auto [bands, repeated] = selectBands(set.bands(), request.bands);
    for (const std::string& word : repeated) {
        context.note("--bands: " + word + " is there already, and comes once");
    }
    renameBands(bands, request.names);
    if (request.displayOrder) {
        putInDisplayOrder(bands);
    }
    return bands;
}

void exportRasters(Context& context, const ExportRequest& request, OutputFormat format,
                   const RasterWriter& write) {
    refuseStandardOutput(request.output);
    std::error_code ignored;
    if (std::filesystem::is_directory(request.output, ignored)) {
        throw Failure(ExitCode::CannotWrite, request.output, "is a directory");
    }
    requireExtension(request.output, format);
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters = rastersOf(context, set, request, request.output);
    Files files;
    for (const OutputRaster& raster : rasters) {
        files.push_back(std::make_unique<OutputFile>(
            raster.path, OutputRules{context.inputs, request.overwrite}));
    }
    const VirtualRasterOptions options = optionsOf(
        request, format == OutputFormat::VirtualRaster ? VirtualRasterOptions::Paths::Relative
                                                       : VirtualRasterOptions::Paths::Absolute);
    Written written = writeAll(context, request, options, rasters, files, write);
    for (std::size_t i = 0; i < rasters.size(); ++i) {
        addStyle(context, rasters[i], written.styles[i], files, written.notes);
    }
    commitTogether(files);
    files.clear();
    // Not before: whoever reads them may have gone, which ends the program.
    for (const Note& note : written.notes) {
        context.warn(note.path, note.text);
    }
    for (const OutputRaster& raster : rasters) {
        context.out << printable(raster.path) << "\n";
    }
}

void printVirtualRaster(Context& context, const ExportRequest& request) {
    if (request.grid.split) {
        throw Failure(ExitCode::Usage, request.output, "--split writes several files; name one");
    }
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters = rastersOf(context, set, request, "standard output");
    const VirtualRaster pixels(rasters.front(),
                               optionsOf(request, VirtualRasterOptions::Paths::Absolute));
    for (const std::string& note : requestNotes(rasters.front(), request)) {
        context.note(note);
    }
    for (const std::string& note : pixels.leftOut()) {
        context.note(note);
    }
    context.out << pixels.text();
}

}  // namespace kestms
