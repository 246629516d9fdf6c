#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "host/gdal/ErrorCapture.h"
#include "tool/commands/Commands.h"
#include "tool/commands/RasterOptions.h"
#include "tool/raster/BandSelection.h"
#include "tool/raster/GdalSession.h"
#include "tool/raster/Picture.h"
#include "tool/raster/RasterExport.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

using kest::BandAssignment;
using kest::BandType;

/// Dark and bright ends of the stretch: 2 % of the pixels lie below, 2 % above.
constexpr double kDarkPart = 0.02;
constexpr double kBrightPart = 0.98;
constexpr int kLargestPicture = 16384;
constexpr std::uint8_t kBrightest = std::numeric_limits<std::uint8_t>::max();

struct QuicklookOptions {
    ExportRequest request;
    std::vector<std::string> rgb;
    int size = 1024;
};

std::vector<Band> bandsFor(const std::vector<Band>& bands,
                           const std::vector<BandAssignment>& channels) {
    std::vector<Band> found;
    for (const BandAssignment channel : channels) {
        const auto band = std::find_if(bands.begin(), bands.end(), [channel](const Band& each) {
            return each.assignment == channel;
        });
        if (band != bands.end()) {
            found.push_back(*band);
        }
    }
    return found;
}

/// The bands for red, green and blue, or one for grey: those asked for; else the bands of the
/// display channels; else the panchromatic or the first one.
std::vector<Band> bandsToShow(const OpenedSet& set, const QuicklookOptions& options) {
    constexpr std::size_t kChannels = 3;
    if (!options.rgb.empty()) {
        std::vector<Band> shown;
        for (const std::string& word : wordsOf(set.bands(), options.rgb)) {
            shown.push_back(selectBands(set.bands(), {word}).front());
        }
        if (shown.size() != kChannels) {
            throw Failure(ExitCode::Usage, "--rgb", "takes three bands");
        }
        return shown;
    }
    std::vector<Band> bands = bandsOf(set, options.request);
    if (!options.request.bands.empty() && (bands.size() == 1 || bands.size() == kChannels)) {
        return bands;
    }
    std::vector<Band> colours = bandsFor(
        bands,
        {BandAssignment::RedChannel, BandAssignment::GreenChannel, BandAssignment::BlueChannel});
    if (colours.size() == kChannels) {
        return colours;
    }
    const auto grey = std::find_if(bands.begin(), bands.end(), [](const Band& band) {
        return band.type == BandType::Panchromatic;
    });
    return {grey == bands.end() ? bands.front() : *grey};
}

/// The raster brought to the size that was asked for. A small scene is enlarged by a whole number.
Pyxis::Size pictureSize(const Pyxis::Size& raster, int longest) {
    const int side = std::max({raster.width, raster.height, 1});
    const int times = std::max(longest / side, 1);
    const double factor = side > longest ? static_cast<double>(longest) / side : times;
    const auto scaled = [factor](std::int32_t pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * factor)));
    };
    return {scaled(raster.width), scaled(raster.height)};
}

/// One channel of the picture: a band, stretched.
class Channel {
  public:
    Channel(GDALRasterBand& band, const OutputBand& source, const Pyxis::Size& size)
        : values_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
          valid_(values_.size()) {
        const auto read = [&](GDALRasterBand& from, void* to, GDALDataType type) {
            throwIfInterrupted();
            return from.RasterIO(GF_Read, 0, 0, from.GetXSize(), from.GetYSize(), to, size.width,
                                 size.height, type, 0, 0, nullptr) == CE_None;
        };
        const Pyxis::ErrorCapture errors;
        if (!read(band, values_.data(), GDT_Float32) ||
            !read(*band.GetMaskBand(), valid_.data(), GDT_Byte)) {
            throw Failure(ExitCode::CannotRead, source.band.componentPath,
                          "its pixels cannot be read");
        }
        stretch();
    }

    /// False, with nothing written, where the band has no data.
    bool shade(std::size_t pixel, std::uint8_t& sample) const {
        if (!isValid(pixel)) {
            return false;
        }
        const double part = bright_ > dark_ ? (values_[pixel] - dark_) / (bright_ - dark_) : 0.5;
        sample = static_cast<std::uint8_t>(std::lround(kBrightest * std::clamp(part, 0.0, 1.0)));
        return true;
    }

  private:
    bool isValid(std::size_t pixel) const {
        return valid_[pixel] != 0 && std::isfinite(values_[pixel]);
    }

    void stretch() {
        std::vector<float> sorted;
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (isValid(i)) {
                sorted.push_back(values_[i]);
            }
        }
        if (!sorted.empty()) {
            const auto quantile = [&sorted](double part) {
                const auto place = std::lround(part * static_cast<double>(sorted.size() - 1));
                std::nth_element(sorted.begin(), sorted.begin() + place, sorted.end());
                return sorted[static_cast<std::size_t>(place)];
            };
            dark_ = quantile(kDarkPart);
            bright_ = quantile(kBrightPart);
        }
    }

    std::vector<float> values_;
    std::vector<std::uint8_t> valid_;
    double dark_ = 0;
    double bright_ = 0;
};

Picture draw(const OutputRaster& raster, int longest) {
    VirtualRasterOptions paths;
    paths.paths = VirtualRasterOptions::Paths::Absolute;
    const VirtualRaster pixels(raster, paths);
    const GdalSession session;
    const Pyxis::Size size = pictureSize(raster.size, longest);
    std::vector<Channel> channels;
    for (std::size_t i = 0; i < raster.bands.size(); ++i) {
        channels.emplace_back(*pixels.dataset().GetRasterBand(static_cast<int>(i) + 1),
                              raster.bands[i], size);
    }
    Picture picture(size.width, size.height);
    for (int row = 0; row < size.height; ++row) {
        throwIfInterrupted();
        for (int column = 0; column < size.width; ++column) {
            const std::size_t place =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(size.width) +
                static_cast<std::size_t>(column);
            Picture::Pixel pixel{};
            bool hasData = true;
            for (std::size_t i = 0; i + 1 < pixel.size(); ++i) {
                hasData =
                    channels[std::min(i, channels.size() - 1)].shade(place, pixel[i]) && hasData;
            }
            if (hasData) {
                pixel.back() = kBrightest;
                picture.at(column, row) = pixel;
            }
        }
    }
    return picture;
}

ExitCode quicklook(Context& context, const QuicklookOptions& options) {
    const ExportRequest& request = options.request;
    refuseStandardOutput(request.output);
    static_cast<void>(pictureFormat(request.output));
    const OpenedSet set = openSet(context, request.inputs);
    const std::vector<OutputRaster> rasters =
        layOut(bandsToShow(set, options), request.output, request.grid);
    draw(rasters.front(), options.size).write(request.output, {context.inputs, request.overwrite});
    return ExitCode::Success;
}

}  // namespace

void addQuicklookCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<QuicklookOptions>();
    CLI::App* command = app.add_subcommand(
        "quicklook", "Draw the scene as a picture, in the colours of its display channels");
    addFileOptions(*command, options->request,
                   "The picture to write (.png, .jpg or .webp; PNG otherwise)");
    command->add_option("--size", options->size, "Longest side in pixels (default: 1024)")
        ->check(CLI::Range(1, kLargestPicture));
    command
        ->add_option("--rgb", options->rgb, "Bands to show in red, green and blue, as for --bands")
        ->allow_extra_args(false);
    addBandsOption(*command, options->request, "; three are red, green and blue,\none is grey");
    addPartOptions(*command, options->request);
    command->footer(
        "Bands of different pixel sizes are brought to one grid and stretched from 2 to 98 %.\n"
        "Without bands for red, green and blue the picture is grey. Pixels without data are\n"
        "transparent (white in JPEG); small scenes are enlarged by a whole number.\n"
        "\n"
        "Examples:\n"
        "  kestms quicklook scene/*.TIF -o scene.png\n"
        "  kestms quicklook scene.xml -o thumbnail.jpg --size 200\n"
        "  kestms quicklook scene.xml -o infrared.png --rgb nir,red,green");
    command->callback([&context, options] {
        context.action = [&context, options] { return quicklook(context, *options); };
    });
}

}  // namespace kestms
