#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tool/commands/Commands.h"
#include "tool/raster/BandPixels.h"
#include "tool/raster/Picture.h"
#include "tool/raster/Placement.h"
#include "tool/scene/OpenedSet.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

using kest::BandAssignment;
using kest::BandType;

/// Dark and bright ends of the stretch: 2 % of the pixels lie below, 2 % above.
constexpr double kDarkPart = 0.02;
constexpr double kBrightPart = 0.98;
constexpr int kLargestPicture = 16384;

struct QuicklookOptions {
    std::vector<std::string> inputs;
    std::string output;
    int size = 1024;
    bool overwrite = false;
};

const Band* bandFor(const OpenedSet& set, BandAssignment channel) {
    const auto found = std::find_if(set.bands().begin(), set.bands().end(),
                                    [&](const Band& band) { return band.assignment == channel; });
    return found == set.bands().end() ? nullptr : &*found;
}

/// The bands for red, green and blue; the panchromatic or else the first band three times when one
/// of the channels has none.
std::array<const Band*, 3> bandsToShow(const OpenedSet& set) {
    const std::array<const Band*, 3> colours{bandFor(set, BandAssignment::RedChannel),
                                             bandFor(set, BandAssignment::GreenChannel),
                                             bandFor(set, BandAssignment::BlueChannel)};
    if (std::find(colours.begin(), colours.end(), nullptr) == colours.end()) {
        return colours;
    }
    const auto grey = std::find_if(set.bands().begin(), set.bands().end(), [](const Band& band) {
        return band.type == BandType::Panchromatic;
    });
    const Band* shown = grey == set.bands().end() ? &set.bands().front() : &*grey;
    return {shown, shown, shown};
}

/// The picture's grid: that of the band with the most pixels among those shown, brought to the
/// size that was asked for. A small scene is enlarged by a whole number.
Pyxis::Size pictureSize(const Band& band, int longest) {
    const int side = std::max({band.width, band.height, 1});
    const int times = std::max(longest / side, 1);
    const double factor = side > longest ? static_cast<double>(longest) / side : times;
    const auto scaled = [factor](std::int32_t pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * factor)));
    };
    return {scaled(band.width), scaled(band.height)};
}

/// One channel of the picture: a band and its stretch.
class Channel {
  public:
    Channel(const OpenedSet& set, const Band& band, int longest) : pixels_(set, band, longest) {
        const std::vector<double> ends = pixels_.quantiles({kDarkPart, kBrightPart});
        dark_ = ends[0];
        bright_ = ends[1];
    }

    /// False, with nothing written, where the band has no data.
    bool shade(const Pyxis::Point2d& world, std::uint8_t& sample) const {
        const auto value = pixels_.at(world);
        if (!value) {
            return false;
        }
        constexpr double kBrightest = std::numeric_limits<std::uint8_t>::max();
        const double part = bright_ > dark_ ? (*value - dark_) / (bright_ - dark_) : 0.5;
        sample = static_cast<std::uint8_t>(std::lround(kBrightest * std::clamp(part, 0.0, 1.0)));
        return true;
    }

  private:
    BandPixels pixels_;
    double dark_;
    double bright_;
};

Picture draw(const OpenedSet& set, const std::array<const Band*, 3>& shown, int longest) {
    const Band& finest =
        **std::max_element(shown.begin(), shown.end(),
                           [](const Band* a, const Band* b) { return a->width < b->width; });
    const Placement placement = placementOf(finest);
    const Pyxis::Size size = pictureSize(finest, longest);
    const std::array<Channel, 3> channels{Channel(set, *shown[0], longest),
                                          Channel(set, *shown[1], longest),
                                          Channel(set, *shown[2], longest)};
    Picture picture(size.width, size.height);
    for (int row = 0; row < size.height; ++row) {
        throwIfInterrupted();
        for (int column = 0; column < size.width; ++column) {
            const Pyxis::Point2d world =
                placement.toWorld((column + 0.5) * finest.width / size.width,
                                  (row + 0.5) * finest.height / size.height);
            Picture::Pixel pixel{};
            bool hasData = true;
            for (std::size_t i = 0; i < channels.size(); ++i) {
                hasData = channels[i].shade(world, pixel[i]) && hasData;
            }
            if (hasData) {
                pixel[3] = std::numeric_limits<std::uint8_t>::max();
                picture.at(column, row) = pixel;
            }
        }
    }
    return picture;
}

ExitCode quicklook(Context& context, const QuicklookOptions& options) {
    const OpenedSet set = openSet(context, options.inputs);
    const auto shown = bandsToShow(set);
    draw(set, shown, options.size).writePng(options.output, {context.inputs, options.overwrite});
    return ExitCode::Success;
}

}  // namespace

void addQuicklookCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<QuicklookOptions>();
    CLI::App* command = app.add_subcommand(
        "quicklook", "Draw the scene as a PNG picture, in the colours of its display channels");
    command->add_option("SET|FILE", options->inputs, "The set")->required();
    command->add_option("-o,--output", options->output, "The picture to write")->required();
    command->add_option("--size", options->size, "Longest side in pixels (default: 1024)")
        ->check(CLI::Range(1, kLargestPicture));
    command->add_flag("--overwrite", options->overwrite,
                      "Replace the output when it is there already");
    command->footer(
        "Bands of different pixel sizes are brought to one grid and stretched from 2 to 98 %.\n"
        "Without bands for red, green and blue the picture is grey. Pixels without data are\n"
        "transparent; small scenes are enlarged by a whole number.\n"
        "\n"
        "Examples:\n"
        "  kestms quicklook scene/*.TIF -o scene.png\n"
        "  kestms quicklook scene.xml -o thumbnail.png --size 200");
    command->callback([&context, options] {
        context.action = [&context, options] { return quicklook(context, *options); };
    });
}

}  // namespace kestms
