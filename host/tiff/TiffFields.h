#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/file/FileHead.h"

namespace Pyxis {

/// Reads a TIFF file at the offsets that it contains. The file is opened only when a value is not
/// within the head.
class TiffReader {
  public:
    /// `path` and `head` must outlive the reader.
    TiffReader(const std::string& path, const FileHead& head);
    TiffReader(const TiffReader&) = delete;
    TiffReader& operator=(const TiffReader&) = delete;
    ~TiffReader();

    /// Whether the file is a BigTIFF, with offsets of 64 bits.
    bool isBig() const { return big_; }
    bool isBigEndian() const { return bigEndian_; }
    /// At most `count` bytes from `offset` on, fewer if the file ends or cannot be read. They are
    /// valid as long as reader and head.
    std::string_view bytes(std::uint64_t offset, std::size_t count);
    /// The bytes as a number in the file's byte order.
    std::uint64_t number(std::string_view bytes) const;

  private:
    const std::string& path_;
    std::string_view head_;
    bool bigEndian_;
    bool big_;
    int descriptor_ = -1;
    std::deque<std::string> read_;  ///< what is not within the head
};

/// The first directory of a TIFF file: fields, each with a tag and values.
class TiffFields {
  public:
    /// The field types whose values are read.
    enum Type : std::uint64_t {
        Ascii = 2,
        Short = 3,
        Long = 4,
        Rational = 5,
        Double = 12,
        Long8 = 16
    };

    struct Field {
        std::uint64_t tag;
        std::uint64_t type;
        std::uint64_t count;     ///< of values
        std::string_view place;  ///< the values if they fit, else their offset
    };

    /// `path` and `head` must outlive the fields.
    TiffFields(const std::string& path, const FileHead& head);

    /// In the order of the file; none when the directory is damaged.
    const std::vector<Field>& all() const { return fields_; }
    bool areBigEndian() const { return file_.isBigEndian(); }
    bool has(std::uint64_t tag) const { return find(tag) != nullptr; }
    /// The number of values of a field; 0 when there is no such field.
    std::uint64_t count(std::uint64_t tag) const;
    /// All bytes of the field with this tag; none when it has another type, is duplicate, has more
    /// bytes than a directory needs or fewer than the field claims.
    std::string_view value(std::uint64_t tag, Type type);
    /// The number of a field of one whole number.
    std::optional<std::uint64_t> onlyNumber(std::uint64_t tag);
    /// The last number of a field of whole numbers.
    std::optional<std::uint64_t> lastNumber(std::uint64_t tag);
    /// The numbers of a field of type Short whose value is known; else none.
    std::vector<std::uint64_t> shorts(std::uint64_t tag);
    /// The numbers of a field of type Double that has exactly so many; else none.
    std::vector<double> doubles(std::uint64_t tag, std::uint64_t expected);

  private:
    const Field* find(std::uint64_t tag) const;
    std::string_view part(const Field& field, std::uint64_t first, std::uint64_t values);

    TiffReader file_;
    std::vector<Field> fields_;
};

}  // namespace Pyxis
