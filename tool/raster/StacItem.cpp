#include "tool/raster/StacItem.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "bands/BandWords.h"
#include "host/Text.h"
#include "host/codecs/RasterSource.h"
#include "tool/raster/BandMetadata.h"
#include "tool/raster/ComponentDescription.h"
#include "tool/raster/Footprint.h"
#include "tool/raster/PixelGrid.h"
#include "tool/raster/RelativePath.h"
#include "tool/scene/BandLabels.h"
#include "tool/scene/Components.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr std::array kExtensions = {
    "https://stac-extensions.github.io/projection/v1.1.0/schema.json",
    "https://stac-extensions.github.io/eo/v1.1.0/schema.json",
    "https://stac-extensions.github.io/raster/v1.1.0/schema.json",
    "https://stac-extensions.github.io/processing/v1.1.0/schema.json",
};

/// The common names of the extension for electro-optical data; a catalogue may have others.
constexpr std::array<std::string_view, 16> kCommonNames = {
    "coastal", "blue",  "green",  "red",    "rededge", "yellow", "pan",    "nir",
    "nir08",   "nir09", "cirrus", "swir16", "swir22",  "lwir",   "lwir11", "lwir12"};

struct MediaType {
    std::string_view driver;
    const char* type;
};
constexpr std::array kMediaTypes = {
    MediaType{"GTiff", "image/tiff; application=geotiff"},
    MediaType{"JP2OpenJPEG", "image/jp2"},
    MediaType{"PNG", "image/png"},
    MediaType{"JPEG", "image/jpeg"},
    MediaType{"NITF", "application/vnd.nitf"},
};

/// STAC's words for types are GDAL's in lower case, but for the byte.
std::string dataTypeWord(const Band& band, GDALDataType type) {
    return hasSignedBytes(band) ? "int8"
           : type == GDT_Byte   ? "uint8"
                                : Pyxis::lowerCase(GDALGetDataTypeName(type));
}

/// A path as part of a URI reference.
std::string encoded(const std::string& path) {
    constexpr std::string_view kPlain = "-._~/!$&'()*+,;=:@";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isAlphanumeric = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                                    (byte >= 'a' && byte <= 'z');
        if (isAlphanumeric || kPlain.find(character) != std::string_view::npos) {
            text += character;
        } else {
            text += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
        }
    }
    return text;
}

/// The address of a file that GDAL reads from the network under another name.
std::optional<std::string> remoteName(const std::string& path) {
    constexpr std::string_view kNetwork = "/vsicurl/";
    if (!isVirtual(path)) {
        return std::nullopt;
    }
    return path.starts_with(kNetwork) ? path.substr(kNetwork.size()) : path;
}

std::string linkTo(const std::string& path, const StacLinks& links) {
    if (auto remote = remoteName(path)) {
        return *remote;
    }
    if (links.absolute) {
        return "file://" + encoded(throughRealDirectory(path).string());
    }
    const std::string relative = relativePath(path, links.item);
    return encoded(relative.starts_with("..") ? relative : "./" + relative);
}

Json eoBand(const Band& band, const std::string& name) {
    Json json = {{"name", name}, {"description", band.name}};
    if (std::find(kCommonNames.begin(), kCommonNames.end(), band.commonName) !=
        kCommonNames.end()) {
        json["common_name"] = band.commonName;
    }
    if (band.spectrum && band.spectrum->centre > 0 && band.spectrum->width > 0) {
        json["center_wavelength"] = band.spectrum->centre;
        json["full_width_half_max"] = band.spectrum->width;
    }
    return json;
}

Json rasterBand(const Band& band, const ComponentDescription& facts, double metresPerUnit) {
    const auto items = facts.fileDomains.find("");
    const bool isPoint = items != facts.fileDomains.end() &&
                         items->second.contains("AREA_OR_POINT") &&
                         items->second.at("AREA_OR_POINT") == "Point";
    Json json = {{"data_type", dataTypeWord(band, facts.type)},
                 {"sampling", isPoint ? "point" : "area"}};
    if (band.noData) {
        json["nodata"] = numberOrWord(*band.noData);
    }
    if (facts.scale != 1 || facts.offset != 0) {
        json["scale"] = numberOrWord(facts.scale);
        json["offset"] = numberOrWord(facts.offset);
    }
    if (!facts.unit.empty()) {
        json["unit"] = facts.unit;
    }
    if (metresPerUnit > 0) {
        const PixelGrid grid(band);
        json["spatial_resolution"] = (grid.pixelWidth() + grid.pixelHeight()) / 2 * metresPerUnit;
    }
    return json;
}

/// The grid of a band, in the coordinate system of the item.
void addGrid(const Band& band, Json& json) {
    const auto t = PixelGrid(band).geoTransform(0, 0);
    const Georeference& place = *band.georeference;
    const auto [west, east] =
        std::minmax({place.upperLeft.x, place.upperRight.x, place.lowerLeft.x, place.lowerRight.x});
    const auto [south, north] =
        std::minmax({place.upperLeft.y, place.upperRight.y, place.lowerLeft.y, place.lowerRight.y});
    json["proj:shape"] = {band.height, band.width};
    json["proj:transform"] = {t[1], t[2], t[0], t[4], t[5], t[3]};
    json["proj:bbox"] = {west, south, east, north};
}

/// A file and its bands.
struct AssetFile {
    std::string path;
    std::vector<Band> bands;  ///< in the order of the file's frames; empty when it is no set
    kest::BandRole role = kest::BandRole::Band;
};

/// Collects and describes the files of an item.
class Assets {
  public:
    Assets(const StacLinks& links, std::string system)
        : links_(links),
          metresPerUnit_(kestms::metresPerUnit(system)),
          system_(std::move(system)) {}

    void add(const Band& band) {
        AssetFile& file = of(band.componentPath);
        file.role = band.role;
        file.bands.push_back(band);
    }

    /// A layer, with its grid and samples if a codec reads it.
    void add(const SetAside& layer) {
        AssetFile& file = of(layer.path);
        file.role =
            kest::valueOf(kest::kRoleWords, layer.reason).value_or(kest::BandRole::Ancillary);
        file.bands = framesAlone(layer.path);
    }

    Json json() {
        std::vector<std::string> paths;
        for (const AssetFile& file : files_) {
            paths.push_back(file.path);
        }
        const std::vector<std::string> labels = distinguishingParts(paths);
        Json assets = Json::object();
        for (std::size_t i = 0; i < files_.size(); ++i) {
            const std::string key = keyFor(labels[i], paths[i]);
            assets[key] = describe(files_[i], key);
        }
        return assets;
    }

  private:
    AssetFile& of(const std::string& path) {
        const auto [place, isNew] = index_.try_emplace(path, files_.size());
        if (isNew) {
            files_.push_back({path, {}, {}});
        }
        return files_[place->second];
    }

    std::string keyFor(const std::string& label, const std::string& path) {
        const std::string name = label.empty() ? fs::path(path).stem().string() : label;
        std::string key = name;
        for (int count = 2; !keys_.insert(key).second; ++count) {
            key = name + "-" + std::to_string(count);
        }
        return key;
    }

    Json describe(AssetFile& file, const std::string& key) {
        Json json = {{"href", linkTo(file.path, links_)}};
        const auto source = Pyxis::rasterSourceOf(file.path, 0);
        const auto* type = std::find_if(
            kMediaTypes.begin(), kMediaTypes.end(),
            [&](const MediaType& row) { return source && row.driver == source->driver; });
        if (type != kMediaTypes.end()) {
            json["type"] = type->type;
        }
        const bool isData = file.role == kest::BandRole::Band;
        const bool isView = file.role == kest::BandRole::Preview;
        json["roles"] = {isData   ? "data"
                         : isView ? "overview"  // STAC's word for a picture in true colour
                                  : kest::wordOf(kest::kRoleWords, file.role)};
        if (!file.bands.empty()) {
            describeBands(file.bands, key, isData, json);
        }
        return json;
    }

    void describeBands(std::vector<Band>& bands, const std::string& key, bool isData, Json& json) {
        std::sort(bands.begin(), bands.end(),
                  [](const Band& a, const Band& b) { return a.componentFrame < b.componentFrame; });
        Json eo = Json::array();
        Json rasters = Json::array();
        for (const Band& band : bands) {
            const bool sharesSystem =
                band.georeference && *band.georeference->coordinateSystem == system_;
            eo.push_back(eoBand(band, bands.size() == 1 ? key : band.name));
            rasters.push_back(rasterBand(band, reader_.describe(band.componentPath, sourceOf(band)),
                                         sharesSystem ? metresPerUnit_ : 0));
            if (sharesSystem && &band == &bands.front()) {
                addGrid(band, json);
            }
        }
        json["title"] = isData && bands.size() == 1 ? bands.front().name : key;
        if (isData) {
            json["eo:bands"] = std::move(eo);
        }
        json["raster:bands"] = std::move(rasters);
    }

    const StacLinks& links_;
    double metresPerUnit_;
    std::string system_;  ///< WKT, of all bands
    std::vector<AssetFile> files_;
    std::map<std::string, std::size_t> index_;
    std::set<std::string> keys_;
    ComponentReader reader_;
};

Json geometryOf(const Footprint& footprint) {
    Json polygons = Json::array();
    for (const Footprint::Ring& ring : footprint.parts) {
        Json points = Json::array();
        for (const Pyxis::Point2d& point : ring) {
            points.push_back({point.x, point.y});
        }
        polygons.push_back(Json::array({std::move(points)}));
    }
    return polygons.size() == 1
               ? Json{{"type", "Polygon"}, {"coordinates", std::move(polygons.front())}}
               : Json{{"type", "MultiPolygon"}, {"coordinates", std::move(polygons)}};
}

Json propertiesOf(const StacScene& scene, const Georeference& place) {
    Json json = Json::object();
    if (!scene.title.empty()) {
        json["title"] = scene.title;
    }
    json["datetime"] = scene.time.isInstant() ? Json(scene.time.start) : Json(nullptr);
    if (!scene.time.isInstant()) {
        json["start_datetime"] = scene.time.start;
        json["end_datetime"] = scene.time.end;
    }
    json["proj:epsg"] = place.epsg > 0 ? Json(place.epsg) : Json(nullptr);
    if (place.epsg <= 0 && !place.coordinateSystem->empty()) {
        json["proj:wkt2"] = *place.coordinateSystem;
    }
    json["processing:software"] = {{"kestms", KESTMS_VERSION}};
    return json;
}

/// Of the product's metadata file.
const char* metadataType(const std::string& path) {
    return path.ends_with(".xml")    ? "application/xml"
           : path.ends_with(".json") ? "application/json"
                                     : "text/plain";
}

}  // namespace

Json stacItem(const OpenedSet& set, const StacScene& scene, const StacLinks& links) {
    // Every band of a set is georeferenced, in the same system.
    const Georeference& place = set.bands().front().georeference.value();
    Assets assets(links, *place.coordinateSystem);
    for (const Band& band : set.bands()) {
        assets.add(band);
    }
    for (const SetAside& layer : scene.layers) {
        assets.add(layer);
    }
    const std::optional<Footprint> footprint = footprintOf(set.bands());
    Json json = {{"type", "Feature"},
                 {"stac_version", "1.0.0"},
                 {"stac_extensions", kExtensions},
                 {"id", scene.id},
                 {"geometry", footprint ? geometryOf(*footprint) : Json(nullptr)}};
    if (footprint) {
        json["bbox"] = footprint->box;
    }
    json["properties"] = propertiesOf(scene, place);
    json["links"] = Json::array();
    if (links.absolute && !links.item.empty()) {
        json["links"].push_back({{"rel", "self"},
                                 {"href", linkTo(links.item, links)},
                                 {"type", "application/geo+json"}});
    }
    json["assets"] = assets.json();
    if (!scene.metadataFile.empty()) {
        json["assets"]["metadata"] = {{"href", linkTo(scene.metadataFile, links)},
                                      {"type", metadataType(scene.metadataFile)},
                                      {"roles", {"metadata"}}};
    }
    return json;
}

}  // namespace kestms
