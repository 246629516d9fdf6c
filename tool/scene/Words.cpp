#include "tool/scene/Words.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "bands/NamingScheme.h"

namespace kestms {
namespace {

struct SchemeRow {
    int scheme;
    std::string_view word;
    std::string_view meaning;
};

constexpr std::array kSchemes = {
    SchemeRow{kest::SchemeNone, "none", "no components"},
    SchemeRow{kest::SchemeGeneric, "generic", "no common naming convention"},
    SchemeRow{kest::SchemeNumbered, "numbered", "file names end in different two-digit numbers"},
    SchemeRow{kest::SchemePoProduct, "po-product", "\"po_\" product names"},
    SchemeRow{kest::SchemePoProductNitf, "po-product-nitf", "\"po_\" product names, NITF files"},
    SchemeRow{kest::SchemeLandsat7, "landsat-7", "\"L7\" names"},
    SchemeRow{kest::SchemeLandsat7Fast, "landsat-7-fast", "\"L7\" names, FAST headers"},
    SchemeRow{kest::SchemeQuickBird, "quickbird", "TIFF files with a QuickBird band list"},
    SchemeRow{kest::SchemeNitf, "nitf", "NITF files with band letters"},
};

struct TypeRow {
    kest::BandType type;
    std::string_view word;
    std::string_view commonName;
};

constexpr std::array kTypes = {
    TypeRow{kest::BandType::Blue, "blue", "blue"},
    TypeRow{kest::BandType::Green, "green", "green"},
    TypeRow{kest::BandType::Red, "red", "red"},
    TypeRow{kest::BandType::NearInfrared, "near-infrared", "nir"},
    TypeRow{kest::BandType::MidInfrared, "mid-infrared", ""},
    TypeRow{kest::BandType::ThermalLowGain, "thermal-low-gain", "lwir"},
    TypeRow{kest::BandType::ThermalHighGain, "thermal-high-gain", "lwir"},
    TypeRow{kest::BandType::Panchromatic, "panchromatic", "pan"},
};

/// Mid-infrared bands by band number: 1.55-1.75 and 2.09-2.35 micrometres.
struct MidInfraredRow {
    int bandNumber;
    std::string_view commonName;
};

constexpr std::array kMidInfrared = {MidInfraredRow{4, "swir16"}, MidInfraredRow{5, "swir22"}};

constexpr std::array<std::string_view, 4> kChannels = {"none", "red", "green", "blue"};
constexpr std::array<std::string_view, 4> kModels = {"single channel", "palette", "RGB",
                                                     "RGB with alpha"};
constexpr std::array<std::string_view, 5> kFormats = {
    "unknown", "unsigned integer", "signed integer", "complex", "floating point"};

template <std::size_t N, typename Index>
std::string_view at(const std::array<std::string_view, N>& words, Index index) {
    const auto position = static_cast<std::size_t>(index);
    return position < N ? words[position] : "unknown";
}

template <std::size_t N, typename Row, typename Matches>
const Row* rowOf(const std::array<Row, N>& rows, Matches matches) {
    const auto found = std::find_if(rows.begin(), rows.end(), matches);
    return found == rows.end() ? nullptr : &*found;
}

const SchemeRow* schemeRow(int scheme) {
    return rowOf(kSchemes, [scheme](const SchemeRow& row) { return row.scheme == scheme; });
}

const TypeRow* typeRow(kest::BandType type) {
    return rowOf(kTypes, [type](const TypeRow& row) { return row.type == type; });
}

}  // namespace

std::string_view schemeWord(int scheme) {
    const SchemeRow* row = schemeRow(scheme);
    return row != nullptr ? row->word : "unknown";
}

std::string_view schemeMeaning(int scheme) {
    const SchemeRow* row = schemeRow(scheme);
    return row != nullptr ? row->meaning : "";
}

std::string_view bandTypeWord(kest::BandType type) {
    const TypeRow* row = typeRow(type);
    return row != nullptr ? row->word : "unknown";
}

std::string_view channelWord(kest::BandAssignment assignment) {
    return at(kChannels, assignment);
}

std::string_view commonName(kest::BandType type, int bandNumber) {
    if (type == kest::BandType::MidInfrared) {
        const MidInfraredRow* row = rowOf(kMidInfrared, [bandNumber](const MidInfraredRow& each) {
            return each.bandNumber == bandNumber;
        });
        return row != nullptr ? row->commonName : "";
    }
    const TypeRow* row = typeRow(type);
    return row != nullptr ? row->commonName : "";
}

std::string_view pixelModelWord(Pyxis::PixelModel model) {
    return at(kModels, model);
}

std::string_view sampleFormatWord(Pyxis::SampleFormat format) {
    return at(kFormats, format);
}

std::string systemName(int epsg, std::string_view wkt) {
    if (epsg > 0) {
        return "EPSG:" + std::to_string(epsg);
    }
    const std::size_t start = wkt.find('"');
    const std::size_t end = start == std::string_view::npos ? start : wkt.find('"', start + 1);
    if (end == std::string_view::npos) {
        return wkt.empty() ? "none" : std::string(wkt.substr(0, 40));
    }
    return std::string(wkt.substr(start + 1, end - start - 1));
}

}  // namespace kestms
