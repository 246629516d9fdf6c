#include "host/codecs/TiffDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>
#include <vector>

namespace Pyxis {
namespace {

namespace tag {
constexpr std::uint64_t kPhotometric = 262;
constexpr std::uint64_t kDescription = 270;
constexpr std::uint64_t kStripOffsets = 273;
constexpr std::uint64_t kStripLengths = 279;
constexpr std::uint64_t kColourMap = 320;
constexpr std::uint64_t kTileOffsets = 324;
constexpr std::uint64_t kTileLengths = 325;
constexpr std::uint64_t kPixelScale = 33550;
constexpr std::uint64_t kTiePoints = 33922;
constexpr std::uint64_t kTransformation = 34264;
constexpr std::uint64_t kKeyDirectory = 34735;
constexpr std::uint64_t kAsciiParameters = 34737;  // the double parameters lie between
constexpr std::uint64_t kGdalMetadata = 42112;
}  // namespace tag

constexpr std::size_t kMostBytes = 65536;

enum FieldType : std::uint64_t { Ascii = 2, Short = 3, Long = 4, Double = 12, Long8 = 16 };

/// Bytes in a value of a field type; 0 for types that no field has that is read here.
constexpr std::uint64_t sizeOf(std::uint64_t type) {
    switch (type) {
        case Ascii:
            return 1;
        case Short:
            return 2;
        case Long:
            return 4;
        case Double:
        case Long8:
            return 8;
        default:
            return 0;
    }
}

/// A TIFF file read at places that it names itself; reading past its end gives no bytes. Most
/// places lie in the head, so that the file seldom needs to be opened.
class TiffReader {
  public:
    TiffReader(const std::string& path, const FileHead& head)
        : path_(path),
          head_(head.bytes),
          bigEndian_(head_.substr(0, 2) == "MM"),
          big_(head_.substr(0, 4).find('\x2b') != std::string_view::npos) {}
    TiffReader(const TiffReader&) = delete;
    TiffReader& operator=(const TiffReader&) = delete;
    ~TiffReader() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    bool isBig() const { return big_; }

    std::string bytes(std::uint64_t offset, std::size_t count) {
        if (offset <= head_.size() && count <= head_.size() - offset) {
            return std::string(head_.substr(static_cast<std::size_t>(offset), count));
        }
        if (descriptor_ < 0) {
            descriptor_ = open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        }
        std::string read(count, '\0');
        const ssize_t got =
            offset > INT64_MAX ? 0
                               : pread(descriptor_, read.data(), count, static_cast<off_t>(offset));
        read.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return read;
    }

    std::uint64_t number(std::string_view field) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < field.size(); ++i) {
            const char byte = bigEndian_ ? field[i] : field[field.size() - 1 - i];
            value = value << 8 | static_cast<unsigned char>(byte);
        }
        return value;
    }

  private:
    const std::string& path_;
    std::string_view head_;
    bool bigEndian_;
    bool big_;
    int descriptor_ = -1;
};

/// Widths in classic TIFF and in BigTIFF.
struct Layout {
    std::size_t firstDirectory, offset, entryCount, entry;
};
constexpr Layout kClassic = {4, 4, 2, 12};
constexpr Layout kBig = {8, 8, 8, 20};

class Directory {
  public:
    Directory(const std::string& path, const FileHead& head)
        : file_(path, head), layout_(file_.isBig() ? kBig : kClassic) {
        const std::uint64_t start =
            file_.number(file_.bytes(layout_.firstDirectory, layout_.offset));
        const std::uint64_t count = file_.number(file_.bytes(start, layout_.entryCount));
        if (count <= kMostBytes / layout_.entry) {
            entries_ = file_.bytes(start + layout_.entryCount,
                                   static_cast<std::size_t>(count) * layout_.entry);
        }
        for (std::size_t at = 0; at + layout_.entry <= entries_.size(); at += layout_.entry) {
            const std::string_view entry = std::string_view(entries_).substr(at, layout_.entry);
            fields_.push_back({file_.number(entry.substr(0, 2)), file_.number(entry.substr(2, 2)),
                               file_.number(entry.substr(4, layout_.offset)),
                               entry.substr(4 + layout_.offset)});
        }
    }

    bool isRead() const { return !fields_.empty(); }
    bool has(std::uint64_t tag) const { return find(tag) != nullptr; }

    /// How many values a field has; 0 when there is no such field.
    std::uint64_t count(std::uint64_t tag) const {
        const Field* field = find(tag);
        return field != nullptr ? field->count : 0;
    }

    /// All bytes of a field; none when there are too many or the type is not one of those above.
    std::string value(std::uint64_t tag) {
        const Field* field = find(tag);
        const std::uint64_t size = field != nullptr ? sizeOf(field->type) : 0;
        return size == 0 || field->count > kMostBytes / size ? std::string()
                                                             : part(*field, 0, field->count);
    }

    /// The last number of a field of numbers.
    std::optional<std::uint64_t> lastNumber(std::uint64_t tag) {
        const Field* field = find(tag);
        if (field == nullptr || field->count == 0 ||
            (field->type != Short && field->type != Long && field->type != Long8)) {
            return std::nullopt;
        }
        const std::string last = part(*field, field->count - 1, 1);
        return last.empty() ? std::nullopt : std::optional(file_.number(last));
    }

    /// A field of exactly so many floating-point numbers; nothing else.
    std::vector<double> doubles(std::uint64_t tag, std::uint64_t expected) {
        const Field* field = find(tag);
        std::vector<double> numbers;
        if (field != nullptr && field->type == Double && field->count == expected) {
            const std::string bytes = value(tag);
            for (std::size_t at = 0; at + sizeof(double) <= bytes.size(); at += sizeof(double)) {
                const std::string_view number = std::string_view(bytes).substr(at, sizeof(double));
                numbers.push_back(std::bit_cast<double>(file_.number(number)));
            }
        }
        return numbers.size() == expected ? numbers : std::vector<double>();
    }

    /// A number in bytes that `value` gave.
    std::uint64_t number(std::string_view bytes) const { return file_.number(bytes); }

  private:
    struct Field {
        std::uint64_t tag;
        std::uint64_t type;
        std::uint64_t count;
        std::string_view place;  ///< the values themselves when they fit, else where they are
    };

    const Field* find(std::uint64_t tag) const {
        const auto found = std::find_if(fields_.begin(), fields_.end(),
                                        [tag](const Field& field) { return field.tag == tag; });
        return found != fields_.end() ? &*found : nullptr;
    }

    std::string part(const Field& field, std::uint64_t first, std::uint64_t values) {
        const std::uint64_t size = sizeOf(field.type);
        const auto length = static_cast<std::size_t>(size * values);
        return field.count <= field.place.size() / size
                   ? std::string(field.place.substr(static_cast<std::size_t>(first * size), length))
                   : file_.bytes(file_.number(field.place) + first * size, length);
    }

    TiffReader file_;
    const Layout& layout_;
    std::string entries_;
    std::vector<Field> fields_;
};

/// The bytes of the GeoTIFF key directory and its two parameter fields.
std::string geoKeys(Directory& directory) {
    std::string keys;
    for (std::uint64_t tag = tag::kKeyDirectory; tag <= tag::kAsciiParameters; ++tag) {
        if (directory.has(tag)) {
            const std::string value = directory.value(tag);
            keys += std::to_string(tag) + "=" + std::to_string(value.size()) + ":" + value;
        }
    }
    return keys;
}

/// Whether the keys say that places are those of pixel corners, not of pixel centres.
bool placesAreCorners(Directory& directory) {
    constexpr std::uint64_t kRasterType = 1025;
    constexpr std::size_t kKeySize = 8;
    const std::string keys = directory.value(tag::kKeyDirectory);
    for (std::size_t at = kKeySize; at + kKeySize <= keys.size(); at += kKeySize) {
        const auto field = [&](std::size_t place) {
            return directory.number(std::string_view(keys).substr(at + 2 * place, 2));
        };
        if (field(0) == kRasterType) {
            return field(1) == 0 && field(2) == 1 && field(3) == 1;
        }
    }
    return false;
}

/// Of a raster that is tied at its first corner, north up, as nearly all are.
std::optional<std::array<double, 6>> transformOf(Directory& directory) {
    const std::vector<double> scale = directory.doubles(tag::kPixelScale, 3);
    const std::vector<double> tie = directory.doubles(tag::kTiePoints, 6);
    if (scale.empty() || tie.empty() || !(scale[0] > 0) || !(scale[1] > 0) || tie[0] != 0 ||
        tie[1] != 0 || directory.has(tag::kTransformation) || !placesAreCorners(directory)) {
        return std::nullopt;
    }
    return {{tie[3], scale[0], 0, tie[4], 0, -scale[1]}};
}

/// Only of light on dark and of red, green and blue is it sure that GDAL makes no colours up.
bool mayHaveColours(Directory& directory) {
    constexpr std::uint64_t kLightOnDark = 1;
    constexpr std::uint64_t kRedGreenBlue = 2;
    const auto model = directory.lastNumber(tag::kPhotometric);
    return directory.has(tag::kColourMap) || (model != kLightOnDark && model != kRedGreenBlue);
}

void findLastBlock(Directory& directory, KnownFacts& facts) {
    const bool tiled = directory.has(tag::kTileOffsets);
    const std::uint64_t offsets = tiled ? tag::kTileOffsets : tag::kStripOffsets;
    const std::uint64_t lengths = tiled ? tag::kTileLengths : tag::kStripLengths;
    const auto offset = directory.lastNumber(offsets);
    const auto length = directory.lastNumber(lengths);
    if (offset && length && directory.count(offsets) == directory.count(lengths)) {
        facts.lastBlock = PixelBlock{*offset, *length};
        facts.blocks = directory.count(offsets);
    }
}

}  // namespace

KnownFacts tiffFacts(const std::string& path, const FileHead& head) {
    KnownFacts facts;
    Directory directory(path, head);
    if (directory.isRead()) {
        // GDAL's own field of metadata can hold anything, descriptions included.
        facts.mayNameOverviews = directory.has(tag::kGdalMetadata);
        facts.mayHaveDescription = facts.mayNameOverviews || directory.has(tag::kDescription);
        facts.mayHaveColours = mayHaveColours(directory);
        facts.systemKey = geoKeys(directory);
        facts.transform = transformOf(directory);
        findLastBlock(directory, facts);
    }
    return facts;
}

}  // namespace Pyxis
