#include "tool/commands/RasterOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// Throws a Failure with ExitCode::Usage for what is not one number.
double numberIn(const std::string& option, std::string_view text) {
    double number = 0;
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        throw Failure(ExitCode::Usage, option, std::string(text) + " is no number");
    }
    return number;
}

std::array<double, 4> fourNumbers(const std::string& option, std::string_view text) {
    std::array<double, 4> numbers{};
    std::size_t count = 0;
    for (bool more = true; more; ++count) {
        const std::size_t comma = text.find(',');
        more = comma != std::string_view::npos;
        if (count == numbers.size()) {
            break;
        }
        numbers[count] = numberIn(option, text.substr(0, comma));
        if (!std::isfinite(numbers[count])) {
            throw Failure(ExitCode::Usage, option, "takes finite numbers");
        }
        text.remove_prefix(more ? comma + 1 : text.size());
    }
    if (count != numbers.size() || !text.empty()) {
        throw Failure(ExitCode::Usage, option, "takes four numbers with commas between them");
    }
    return numbers;
}

std::array<double, 4> boxIn(std::string_view text) {
    const std::array<double, 4> box = fourNumbers("--bbox", text);
    if (box[0] > box[2] || box[1] > box[3]) {
        throw Failure(ExitCode::Usage, "--bbox", "takes XMIN,YMIN,XMAX,YMAX: the least first");
    }
    return box;
}

void requireWholePixels(const std::array<double, 4>& window) {
    if (std::any_of(window.begin(), window.end(),
                    [](double number) { return number != std::floor(number); })) {
        throw Failure(ExitCode::Usage, "--window", "takes whole pixels");
    }
}

void setResolution(GridOptions& grid, const std::string& word) {
    if (word == "finest" || word == "coarsest") {
        grid.resolution =
            word == "finest" ? GridOptions::Resolution::Finest : GridOptions::Resolution::Coarsest;
        return;
    }
    grid.resolution = GridOptions::Resolution::Given;
    grid.pixelSize = numberIn("--resolution", word);
    if (!(grid.pixelSize > 0) || !std::isfinite(grid.pixelSize)) {
        throw Failure(ExitCode::Usage, "--resolution", "a pixel size is a finite number above 0");
    }
}

}  // namespace

void addFileOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten) {
    command.add_option("SET|FILE", request.inputs, "The set")->required();
    command.add_option("-o,--output", request.output, whatIsWritten)->required();
    command.add_flag("--overwrite", request.overwrite,
                     "Replace the output when it is there already");
}

void addPartOptions(CLI::App& command, ExportRequest& request) {
    auto* box = command.add_option_function<std::string>(
        "--bbox", [&request](const std::string& text) { request.grid.box = boxIn(text); },
        "Only the part inside XMIN,YMIN,XMAX,YMAX, in units of the coordinate\n"
        "system, enlarged to whole pixels");
    command
        .add_option_function<std::string>(
            "--window",
            [&request](const std::string& text) {
                request.grid.window = fourNumbers("--window", text);
                requireWholePixels(*request.grid.window);
            },
            "Only COLUMN,ROW,WIDTH,HEIGHT, in pixels of the grid that all these\n"
            "bands share")
        ->excludes(box);
}

void addBandsOption(CLI::App& command, ExportRequest& request, const std::string& more) {
    command
        .add_option("--bands", request.bands,
                    "Only these bands, in this order: names, common names (red, nir),\n"
                    "numbers of the product (4, B4), #FRAME, or patterns such as\n"
                    "'*_B4.TIF', with commas between them" +
                        more)
        ->allow_extra_args(false);
}

void addRasterOptions(CLI::App& command, ExportRequest& request, const std::string& whatIsWritten) {
    addFileOptions(command, request, whatIsWritten);
    addBandsOption(command, request, "");
    command
        .add_option_function<std::string>(
            "--order",
            [&request](const std::string& word) { request.displayOrder = word == "display"; },
            "set (default), or display: red, green and blue first")
        ->check(CLI::IsMember({"set", "display"}));
    command.add_option("--name", request.names, "Call a band otherwise: BAND=TEXT")
        ->allow_extra_args(false);
    auto* resolution = command.add_option_function<std::string>(
        "--resolution", [&request](const std::string& word) { setResolution(request.grid, word); },
        "Pixel size of the grid that bands of different ones share: finest\n"
        "(default), coarsest, or a SIZE in units of the coordinate system");
    command
        .add_flag("--split", request.grid.split,
                  "Write a file for each pixel size, OUT_15m and so on")
        ->excludes(resolution);
    command
        .add_option("--resampling", request.resampling,
                    "nearest (default), bilinear, cubic or average")
        ->check(CLI::IsMember({"nearest", "bilinear", "cubic", "average"}));
    command.add_option_function<std::string>(
        "--nodata",
        [&request](const std::string& text) { request.noData = numberIn("--nodata", text); },
        "One no-data value for all bands, in place of their own");
    command.add_flag_callback(
        "--no-style", [&request] { request.withStyle = false; },
        "Write no OUT.qml, the layer style for natural colours in QGIS");
    addPartOptions(command, request);
}

}  // namespace kestms
