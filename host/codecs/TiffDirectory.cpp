#include "host/codecs/GeoKeys.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string_view>

namespace Pyxis {
namespace {

constexpr std::uint64_t kKeyDirectory = 34735;
constexpr std::uint64_t kAsciiParameters = 34737;  // the double parameters lie between
constexpr std::size_t kMostBytes = 65536;

/// Bytes in a value of a TIFF field type, by its number; 0 for types that keys do not have.
constexpr std::uint64_t typeSize(std::uint64_t type) {
    constexpr std::uint64_t kShort = 3;
    constexpr std::uint64_t kDouble = 12;
    constexpr std::uint64_t kAscii = 2;
    return type == kShort ? 2 : type == kDouble ? 8 : type == kAscii ? 1 : 0;
}

/// A TIFF file read at places that it names itself; reading past its end gives no bytes.
class TiffReader {
  public:
    explicit TiffReader(const std::string& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        const std::string order = bytes(0, 4);
        bigEndian_ = order.substr(0, 2) == "MM";
        big_ = order.find('\x2b') != std::string::npos;
    }
    TiffReader(const TiffReader&) = delete;
    TiffReader& operator=(const TiffReader&) = delete;
    ~TiffReader() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    bool isBig() const { return big_; }

    std::string bytes(std::uint64_t offset, std::size_t count) const {
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
    int descriptor_;
    bool bigEndian_ = false;
    bool big_ = false;
};

/// Widths in classic TIFF and in BigTIFF.
struct Layout {
    std::size_t firstDirectory, offset, entryCount, entry;
};
constexpr Layout kClassic = {4, 4, 2, 12};
constexpr Layout kBig = {8, 8, 8, 20};

/// The value of a directory entry; empty when it is too long or of a type that keys do not have.
std::string valueOf(const TiffReader& file, const Layout& layout, std::string_view entry) {
    const std::uint64_t size = typeSize(file.number(entry.substr(2, 2)));
    const std::uint64_t count = file.number(entry.substr(4, layout.offset));
    if (size == 0 || count > kMostBytes / size) {
        return {};
    }
    const std::string_view place = entry.substr(4 + layout.offset);
    const auto length = static_cast<std::size_t>(size * count);
    return length <= place.size() ? std::string(place.substr(0, length))
                                  : file.bytes(file.number(place), length);
}

}  // namespace

std::string geoKeys(const std::string& path) {
    const TiffReader file(path);
    const Layout& layout = file.isBig() ? kBig : kClassic;
    const std::uint64_t directory = file.number(file.bytes(layout.firstDirectory, layout.offset));
    const std::uint64_t count = file.number(file.bytes(directory, layout.entryCount));
    if (count > kMostBytes / layout.entry) {
        return {};
    }
    const std::string entries =
        file.bytes(directory + layout.entryCount, static_cast<std::size_t>(count) * layout.entry);
    std::string keys;
    for (std::size_t at = 0; at + layout.entry <= entries.size(); at += layout.entry) {
        const std::string_view entry = std::string_view(entries).substr(at, layout.entry);
        const std::uint64_t tag = file.number(entry.substr(0, 2));
        if (tag >= kKeyDirectory && tag <= kAsciiParameters) {
            const std::string value = valueOf(file, layout, entry);
            keys += std::to_string(tag) + "=" + std::to_string(value.size()) + ":" + value;
        }
    }
    return keys;
}

}  // namespace Pyxis
