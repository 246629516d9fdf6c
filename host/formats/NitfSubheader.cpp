#include "host/formats/NitfSubheader.h"

#include <algorithm>
#include <charconv>

namespace Pyxis {
namespace {

/// Reads fields of fixed width from a header; past its end they are empty.
class FieldReader {
  public:
    explicit FieldReader(std::string_view rest) : rest_(rest) {}

    std::string_view text(std::size_t width) {
        const std::string_view field = rest_.substr(0, width);
        rest_.remove_prefix(field.size());
        return field;
    }
    /// 0 for a field that holds no number.
    unsigned long long number(std::size_t width) {
        const std::string_view field = text(width);
        unsigned long long value = 0;
        std::from_chars(field.data(), field.data() + field.size(), value);
        return value;
    }
    void skip(unsigned long long width) {
        rest_.remove_prefix(
            static_cast<std::size_t>(std::min<unsigned long long>(width, rest_.size())));
    }
    bool atEnd() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

/// The downgrading event, which only version 2.0 has, and only after this mark.
constexpr std::string_view kDowngradeByEvent = "999998";
constexpr std::size_t kEventWidth = 40;

std::string trimmed(std::string_view field) {
    const std::size_t end = field.find_last_not_of(' ');
    return std::string(field.substr(0, end == std::string_view::npos ? 0 : end + 1));
}

/// Skips everything before the number of bands.
void skipToBands(FieldReader& header, bool version20) {
    header.skip(123 + 1 + 160);  // identification, and security but for its last 6 characters
    if (header.text(6) == kDowngradeByEvent && version20) {
        header.skip(kEventWidth);
    }
    header.skip(1 + 42 + 8 + 8 + 3 + 8 + 8 + 2 + 1);  // encryption to justification
    const std::string_view corners = header.text(1);
    if (corners != " " && !(version20 && corners == "N")) {
        header.skip(60);
    }
    header.skip(80 * header.number(1));  // comments
    const std::string_view compression = header.text(2);
    if (compression != "NC" && compression != "NM") {
        header.skip(4);
    }
}

}  // namespace

std::vector<std::string> bandRepresentations(std::string_view subheader, bool version20) {
    FieldReader header(subheader);
    skipToBands(header, version20);
    unsigned long long bands = header.number(1);
    if (bands == 0) {
        bands = header.number(5);
    }
    std::vector<std::string> representations;
    while (representations.size() < bands && !header.atEnd()) {
        representations.push_back(trimmed(header.text(2)));
        header.skip(6 + 1 + 3);  // significance and filter
        const unsigned long long tables = header.number(1);
        if (tables > 0) {
            header.skip(tables * header.number(5));
        }
    }
    return representations;
}

unsigned long long endOfImages(std::string_view fileHeader) {
    FieldReader header(fileHeader);
    header.skip(280);
    if (header.text(6) == kDowngradeByEvent && isVersion20(fileHeader)) {
        header.skip(kEventWidth);
    }
    header.skip(56 + 12);  // up to the file length, which some writers get wrong
    unsigned long long end = header.number(6);
    unsigned long long images = header.number(3);
    for (; images > 0 && !header.atEnd(); --images) {
        end += header.number(6);  // subheader
        end += header.number(10);
    }
    return images == 0 ? end : 0;
}

bool isVersion20(std::string_view fileHeader) {
    return fileHeader.substr(0, 9) == "NITF02.00";
}

}  // namespace Pyxis
