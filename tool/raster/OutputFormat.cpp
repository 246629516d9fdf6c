#include "tool/raster/OutputFormat.h"

#include <algorithm>
#include <array>
#include <optional>

#include "host/Text.h"
#include "tool/scene/PathParts.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

struct FormatRow {
    std::string_view extension;
    std::optional<OutputFormat> format;  ///< none: one that the tool does not write
};

constexpr std::array kFormats = {
    FormatRow{".vrt", OutputFormat::VirtualRaster},
    FormatRow{".tif", OutputFormat::GeoTiff},
    FormatRow{".tiff", OutputFormat::GeoTiff},
    FormatRow{".png", OutputFormat::Png},
    FormatRow{".jpg", OutputFormat::Jpeg},
    FormatRow{".jpeg", OutputFormat::Jpeg},
    FormatRow{".webp", OutputFormat::WebP},
    FormatRow{".xml", OutputFormat::SetDocument},
    FormatRow{".json", OutputFormat::StacItem},
    FormatRow{".geojson", OutputFormat::StacItem},
    FormatRow{".txt", {}},
    FormatRow{".qml", {}},
    FormatRow{".jp2", {}},
    FormatRow{".img", {}},
    FormatRow{".ntf", {}},
    FormatRow{".nitf", {}},
    FormatRow{".nc", {}},
    FormatRow{".hdf", {}},
    FormatRow{".gpkg", {}},
    FormatRow{".pdf", {}},
    FormatRow{".gif", {}},
    FormatRow{".bmp", {}},
    FormatRow{".bil", {}},
    FormatRow{".zip", {}},
};

const FormatRow* rowOf(const std::string& path) {
    const std::string extension = Pyxis::lowerCase(std::string(extensionOf(path)));
    const auto* row = std::find_if(kFormats.begin(), kFormats.end(), [&](const FormatRow& each) {
        return each.extension == extension;
    });
    return row == kFormats.end() ? nullptr : row;
}

}  // namespace

const char* driverOf(OutputFormat format) {
    constexpr std::array kDrivers = {"VRT", "GTiff", "PNG", "JPEG", "WEBP"};
    return kDrivers.at(static_cast<std::size_t>(format));
}

OutputFormat pictureFormat(const std::string& path) {
    const FormatRow* row = rowOf(path);
    const OutputFormat format =
        row == nullptr ? OutputFormat::Png : row->format.value_or(OutputFormat::GeoTiff);
    if (format != OutputFormat::Png && format != OutputFormat::Jpeg &&
        format != OutputFormat::WebP) {
        throw Failure(ExitCode::Usage, path, "pictures are PNG, JPEG or WebP");
    }
    return format;
}

void requireExtension(const std::string& path, OutputFormat format) {
    const FormatRow* row = rowOf(path);
    if (row != nullptr && row->format != format) {
        throw Failure(ExitCode::Usage, path,
                      format == OutputFormat::GeoTiff ? "the output is a GeoTIFF (.tif)"
                      : format == OutputFormat::VirtualRaster
                          ? "the output is a virtual raster (.vrt)"
                      : format == OutputFormat::StacItem ? "the output is a STAC item (.json)"
                                                         : "the output is a set document (.xml)");
    }
}

bool isStandardOutput(std::string_view path) {
    constexpr std::array<std::string_view, 4> kNames = {"-", "/dev/stdout", "/dev/fd/1",
                                                        "/proc/self/fd/1"};
    return std::find(kNames.begin(), kNames.end(), path) != kNames.end();
}

void refuseStandardOutput(const std::string& path) {
    if (isStandardOutput(path)) {
        throw Failure(ExitCode::Usage, path, "standard output takes no raster; name a file");
    }
}

}  // namespace kestms
