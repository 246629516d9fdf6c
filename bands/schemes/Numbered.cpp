#include <algorithm>

#include "bands/AsciiText.h"
#include "bands/FileName.h"
#include "bands/schemes/Schemes.h"

namespace kest {
namespace {

/// The integer that at most two characters begin with, as the C library reads one: blanks and a
/// sign may come first, and no digit at all is 0.
int leadingInteger(std::u16string_view text) {
    constexpr std::u16string_view kBlanks = u" \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    int value = 0;
    for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
        value = value * 10 + (text.front() - u'0');
    }
    return negative ? -value : value;
}

std::optional<Identity> identify(const BandFile& band) {
    const std::u16string name = fileNameOf(band.file).name;
    const std::u16string ending = name.substr(name.size() - std::min<std::size_t>(name.size(), 2));
    Identity identity = Identity::generic(band.ordinal);
    identity.bandName.text = u"B" + ending;
    identity.bandNumber = leadingInteger(ending);
    return identity;
}

/// Cuts off the two digits of the band number, and the "_" or "_B" before them unless nothing would
/// be left.
std::optional<std::u16string> withoutBandNumber(const BandFile& first) {
    const std::u16string fileName = fileNameOf(first.file).name;
    std::u16string_view name = fileName;
    if (name.size() > 2) {
        name.remove_suffix(2);
        if (name.size() >= 2 && name.back() == u'_') {
            name.remove_suffix(1);
        } else if (name.size() >= 3 && equalIgnoringCase(name.substr(name.size() - 2), u"_B")) {
            name.remove_suffix(2);
        }
    }
    return std::u16string(name);
}

}  // namespace

constexpr Scheme kNumberedScheme{
    SchemeNumbered, "numbered", "file names end in different two-digit numbers",
    nullptr,        identify,   withoutBandNumber,
};

}  // namespace kest
