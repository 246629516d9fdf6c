#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

// Small TIFF files made field by field, for files that no writer makes.

namespace fakes {

struct TiffField {
    std::uint16_t tag;
    std::uint16_t type;  ///< TIFF's number
    std::vector<double> values;
};

inline std::vector<double> codesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

inline void appendNumber(std::string& bytes, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        bytes.push_back(static_cast<char>(value >> 8 * i));
    }
}

inline std::string encoded(const TiffField& field) {
    constexpr std::size_t kWidths[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
    std::string bytes;
    for (const double value : field.values) {
        const std::uint64_t number =
            field.type == 12   ? std::bit_cast<std::uint64_t>(value)
            : field.type == 11 ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
            : value < 0        ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
                               : static_cast<std::uint64_t>(value);
        appendNumber(bytes, number, kWidths[field.type]);
    }
    return bytes;
}

/// A little-endian file of one directory with the given fields. Offsets of strips count from the
/// first pixel.
inline std::string tiffBytes(std::vector<TiffField> fields, const std::string& pixels,
                             bool directoryLast = false) {
    constexpr std::uint16_t kStripOffsets = 273;
    std::size_t beside = 0;  // bytes of values that do not fit into their entries
    for (const TiffField& field : fields) {
        const std::size_t size = encoded(field).size();
        beside += size > 4 ? size : 0;
    }
    const std::size_t directory = 8 + (directoryLast ? pixels.size() : 0);
    std::size_t place = directory + 2 + 12 * fields.size() + 4;
    const std::size_t firstPixel = directoryLast ? 8 : place + beside;
    std::string head = "II*";
    appendNumber(head, directory << 8, 5);
    std::string entries;
    std::string values;
    appendNumber(entries, fields.size(), 2);
    for (TiffField& field : fields) {
        for (double& value : field.values) {
            value += field.tag == kStripOffsets ? static_cast<double>(firstPixel) : 0;
        }
        std::string bytes = encoded(field);
        appendNumber(entries, field.tag, 2);
        appendNumber(entries, field.type, 2);
        appendNumber(entries, field.values.size(), 4);
        if (bytes.size() > 4) {
            appendNumber(entries, place + values.size(), 4);
            values += bytes;
        } else {
            bytes.resize(4);
            entries += bytes;
        }
    }
    appendNumber(entries, 0, 4);
    return head + (directoryLast ? pixels + entries + values : entries + values + pixels);
}

/// The fields of a raster of 12 by 8 bytes in strips of three lines, with a tie point; a test adds
/// its own and replaces those with the same tag.
inline std::vector<TiffField> rasterFields(const std::vector<TiffField>& own) {
    std::vector<TiffField> fields = {
        {256, 3, {12}},
        {257, 3, {8}},
        {258, 3, {8}},
        {259, 3, {1}},
        {262, 3, {1}},
        {273, 4, {0, 36, 72}},
        {277, 3, {1}},
        {278, 3, {3}},
        {279, 4, {36, 36, 24}},
        {33550, 12, {30, 30, 0}},
        {33922, 12, {0, 0, 0, 500000, 4600000, 0}},
    };
    for (const TiffField& field : own) {
        std::erase_if(fields, [&](const TiffField& one) { return one.tag == field.tag; });
    }
    fields.insert(fields.end(), own.begin(), own.end());
    std::stable_sort(fields.begin(), fields.end(), [](const TiffField& one, const TiffField& next) {
        return one.tag < next.tag;
    });
    return fields;
}

inline std::string rasterPixels() {
    std::string pixels;
    for (int i = 0; i < 96; ++i) {
        pixels.push_back(static_cast<char>(i));
    }
    return pixels;
}

/// A field of GeoTIFF keys: of each its number, the tag that holds it, count and value.
inline TiffField keyDirectory(const std::vector<std::array<double, 4>>& keys,
                              std::uint16_t type = 3) {
    TiffField field{34735, type, {1, 1, 0, static_cast<double>(keys.size())}};
    for (const auto& key : keys) {
        field.values.insert(field.values.end(), key.begin(), key.end());
    }
    return field;
}

/// The keys of a registered projected system, with tie points at pixel corners.
inline std::vector<std::array<double, 4>> systemKeys(int code) {
    return {{1024, 0, 1, 1},
            {1025, 0, 1, 1},
            {3072, 0, 1, static_cast<double>(code)},
            {3076, 0, 1, 9001}};
}

}  // namespace fakes
