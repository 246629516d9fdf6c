#include "host/tiff/GeoKeys.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

#include "host/tiff/TiffTags.h"

namespace Pyxis {
namespace {

/// Numbers in a key, and in the head of the directory: version, two revisions, count of keys.
constexpr std::size_t kKeyNumbers = 4;

struct Key {
    std::uint64_t id;
    std::uint64_t place;  ///< tag of the field that holds the value; 0: `value` itself
    std::uint64_t count;
    std::uint64_t value;

    bool isNumber() const { return place == 0 && count == 1; }
};

// Numbers of GeoTIFF 1.1.
constexpr std::uint64_t kModelType = 1024;
constexpr std::uint64_t kRasterType = 1025;
constexpr std::uint64_t kCitation = 1026;
constexpr std::uint64_t kGeodeticCitation = 2049;
constexpr std::uint64_t kAngularUnits = 2054;
constexpr std::uint64_t kProjectedSystem = 3072;
constexpr std::uint64_t kProjectedCitation = 3073;
constexpr std::uint64_t kLinearUnits = 3076;

constexpr std::uint64_t kProjected = 1;
constexpr std::uint64_t kCorners = 1;
constexpr std::uint64_t kCentres = 2;
constexpr std::uint64_t kMetre = 9001;
constexpr std::uint64_t kDegree = 9102;
constexpr std::uint64_t kUserDefined = 32767;

/// A key that a plain projected system may have; zero means any value.
struct PlainKey {
    std::uint64_t id;
    bool isText;
    std::uint64_t value;
};
constexpr PlainKey kPlainKeys[] = {
    {kModelType, false, kProjected}, {kRasterType, false, 0},         {kCitation, true, 0},
    {kGeodeticCitation, true, 0},    {kAngularUnits, false, kDegree}, {kProjectedSystem, false, 0},
    {kProjectedCitation, true, 0},   {kLinearUnits, false, kMetre},
};

bool isPlain(const Key& key, std::string_view texts) {
    const auto says = [&](const PlainKey& plain) {
        return plain.isText
                   ? key.place == tag::kAsciiParameters && key.value + key.count <= texts.size()
                   : key.isNumber() && (plain.value == 0 || key.value == plain.value);
    };
    return std::any_of(std::begin(kPlainKeys), std::end(kPlainKeys),
                       [&](const PlainKey& plain) { return key.id == plain.id && says(plain); });
}

/// The keys of a complete directory of version 1; none of any other.
std::vector<Key> keysIn(const std::vector<std::uint64_t>& directory) {
    std::vector<Key> keys;
    if (directory.size() >= kKeyNumbers && directory[0] == 1 &&
        directory[3] < directory.size() / kKeyNumbers) {
        keys.reserve(static_cast<std::size_t>(directory[3]));
        for (std::size_t at = kKeyNumbers; keys.size() < directory[3]; at += kKeyNumbers) {
            keys.push_back(
                {directory[at], directory[at + 1], directory[at + 2], directory[at + 3]});
        }
    }
    return keys;
}

const Key* find(const std::vector<Key>& keys, std::uint64_t id) {
    const auto found =
        std::find_if(keys.begin(), keys.end(), [id](const Key& key) { return key.id == id; });
    return found != keys.end() ? &*found : nullptr;
}

/// In ascending order, each at most once. Of a key given twice, libgeotiff takes the last.
bool areInOrder(const std::vector<Key>& keys) {
    return std::adjacent_find(keys.begin(), keys.end(), [](const Key& one, const Key& next) {
               return one.id >= next.id;
           }) == keys.end();
}

/// Whether texts are only names with one terminator. Some writers put parameters of the system
/// there, as NAME = VALUE.
bool areNames(std::string_view texts) {
    using namespace std::string_view_literals;
    return texts.empty() || texts.find_first_of("=$\n\0"sv) == texts.size() - 1;
}

int plainProjectedSystem(const std::vector<Key>& keys, std::string_view texts) {
    const Key* system = find(keys, kProjectedSystem);
    return system != nullptr && find(keys, kModelType) != nullptr &&
                   std::all_of(keys.begin(), keys.end(),
                               [texts](const Key& key) { return isPlain(key, texts); }) &&
                   areNames(texts) && system->value < kUserDefined
               ? static_cast<int>(system->value)
               : 0;
}

struct DecidingField {
    std::uint64_t tag;
    TiffFields::Type type;
};
constexpr DecidingField kDecidingFields[] = {
    {tag::kKeyDirectory, TiffFields::Short},
    {tag::kDoubleParameters, TiffFields::Double},
    {tag::kAsciiParameters, TiffFields::Ascii},
};

/// libtiff also accepts these fields in other types and repairs damaged ones: no key for those.
std::string decidingBytes(TiffFields& fields) {
    std::string bytes;
    for (const auto& [tag, type] : kDecidingFields) {
        if (!fields.has(tag)) {
            continue;
        }
        const std::string_view value = fields.value(tag, type);
        if (value.empty()) {
            return {};
        }
        bytes.append(std::to_string(tag)).append("=");
        bytes.append(std::to_string(value.size())).append(":").append(value);
    }
    return bytes.empty() ? bytes : (fields.areBigEndian() ? "MM" : "II") + bytes;
}

}  // namespace

GeoKeys readGeoKeys(TiffFields& fields) {
    GeoKeys read;
    read.bytes = decidingBytes(fields);
    const std::vector<Key> keys = keysIn(fields.shorts(tag::kKeyDirectory));
    if (!areInOrder(keys)) {
        return read;
    }
    read.projectedSystem =
        plainProjectedSystem(keys, fields.value(tag::kAsciiParameters, TiffFields::Ascii));
    const Key* raster = find(keys, kRasterType);
    const std::uint64_t places = raster != nullptr && raster->isNumber() ? raster->value : 0;
    if (places == kCorners) {
        read.places = GeoKeys::Places::Corners;
    } else if (places == kCentres && read.projectedSystem != 0) {
        // libgeotiff ignores all keys when one is damaged, and corners are the default.
        read.places = GeoKeys::Places::Centres;
    }
    return read;
}

}  // namespace Pyxis
