#include "host/tiff/TiffFields.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>

namespace Pyxis {
namespace {

constexpr std::size_t kMostBytes = 65536;

/// Bytes in a value of a field type; 0 for types that are not read here.
constexpr std::uint64_t sizeOf(std::uint64_t type) {
    switch (type) {
        case TiffFields::Ascii:
            return 1;
        case TiffFields::Short:
            return 2;
        case TiffFields::Long:
            return 4;
        case TiffFields::Rational:
        case TiffFields::Double:
        case TiffFields::Long8:
            return 8;
        default:
            return 0;
    }
}

/// Widths in classic TIFF and in BigTIFF.
struct Layout {
    std::size_t firstDirectory, offset, entryCount, entry;
};
constexpr Layout kClassic = {4, 4, 2, 12};
constexpr Layout kBig = {8, 8, 8, 20};

}  // namespace

TiffReader::TiffReader(const std::string& path, const FileHead& head)
    : path_(path),
      head_(head.bytes),
      bigEndian_(head_.substr(0, 2) == "MM"),
      big_(head_.substr(0, 4).find('\x2b') != std::string_view::npos) {}

TiffReader::~TiffReader() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

std::string_view TiffReader::bytes(std::uint64_t offset, std::size_t count) {
    if (offset <= head_.size() && count <= head_.size() - offset) {
        return head_.substr(static_cast<std::size_t>(offset), count);
    }
    if (descriptor_ < 0) {
        descriptor_ = open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    std::string& read = read_.emplace_back(count, '\0');
    const ssize_t got =
        offset > INT64_MAX ? 0 : pread(descriptor_, read.data(), count, static_cast<off_t>(offset));
    read.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return read;
}

std::uint64_t TiffReader::number(std::string_view bytes) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char byte = bigEndian_ ? bytes[i] : bytes[bytes.size() - 1 - i];
        value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
}

TiffFields::TiffFields(const std::string& path, const FileHead& head) : file_(path, head) {
    // BigTIFF states the width of its offsets, for future versions.
    if (file_.isBig() &&
        (file_.number(file_.bytes(4, 2)) != kBig.offset || file_.number(file_.bytes(6, 2)) != 0)) {
        return;
    }
    const Layout& layout = file_.isBig() ? kBig : kClassic;
    const std::uint64_t start = file_.number(file_.bytes(layout.firstDirectory, layout.offset));
    const std::uint64_t count = file_.number(file_.bytes(start, layout.entryCount));
    if (count > kMostBytes / layout.entry) {
        return;
    }
    const std::string_view entries =
        file_.bytes(start + layout.entryCount, static_cast<std::size_t>(count) * layout.entry);
    if (entries.size() != count * layout.entry) {
        return;
    }
    fields_.reserve(static_cast<std::size_t>(count));
    for (std::size_t at = 0; at < entries.size(); at += layout.entry) {
        const std::string_view entry = entries.substr(at, layout.entry);
        fields_.push_back({file_.number(entry.substr(0, 2)), file_.number(entry.substr(2, 2)),
                           file_.number(entry.substr(4, layout.offset)),
                           entry.substr(4 + layout.offset)});
    }
}

std::uint64_t TiffFields::count(std::uint64_t tag) const {
    const Field* field = find(tag);
    return field != nullptr ? field->count : 0;
}

std::string_view TiffFields::value(std::uint64_t tag, Type type) {
    const Field* field = find(tag);
    const auto times = std::count_if(fields_.begin(), fields_.end(),
                                     [tag](const Field& one) { return one.tag == tag; });
    return times != 1 || field->type != type || field->count > kMostBytes / sizeOf(type)
               ? std::string_view()
               : part(*field, 0, field->count);
}

std::optional<std::uint64_t> TiffFields::onlyNumber(std::uint64_t tag) {
    return count(tag) == 1 ? lastNumber(tag) : std::nullopt;
}

std::optional<std::uint64_t> TiffFields::lastNumber(std::uint64_t tag) {
    const Field* field = find(tag);
    if (field == nullptr || field->count == 0 ||
        (field->type != Short && field->type != Long && field->type != Long8)) {
        return std::nullopt;
    }
    const std::string_view last = part(*field, field->count - 1, 1);
    return last.empty() ? std::nullopt : std::optional(file_.number(last));
}

std::vector<std::uint64_t> TiffFields::shorts(std::uint64_t tag) {
    std::vector<std::uint64_t> numbers;
    const std::string_view bytes = value(tag, Short);
    numbers.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        numbers.push_back(file_.number(bytes.substr(at, 2)));
    }
    return numbers;
}

std::vector<double> TiffFields::doubles(std::uint64_t tag, std::uint64_t expected) {
    std::vector<double> numbers;
    const std::string_view bytes = value(tag, Double);
    numbers.reserve(bytes.size() / sizeof(double));
    for (std::size_t at = 0; at + sizeof(double) <= bytes.size(); at += sizeof(double)) {
        const std::string_view number = bytes.substr(at, sizeof(double));
        numbers.push_back(std::bit_cast<double>(file_.number(number)));
    }
    return numbers.size() == expected ? numbers : std::vector<double>();
}

const TiffFields::Field* TiffFields::find(std::uint64_t tag) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [tag](const Field& field) { return field.tag == tag; });
    return found != fields_.end() ? &*found : nullptr;
}

std::string_view TiffFields::part(const Field& field, std::uint64_t first, std::uint64_t values) {
    const std::uint64_t size = sizeOf(field.type);
    const auto length = static_cast<std::size_t>(size * values);
    const std::string_view bytes =
        field.count <= field.place.size() / size
            ? field.place.substr(static_cast<std::size_t>(first * size), length)
            : file_.bytes(file_.number(field.place) + first * size, length);
    return bytes.size() == length ? bytes : std::string_view();
}

}  // namespace Pyxis
