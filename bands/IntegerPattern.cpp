#include "bands/IntegerPattern.h"

#include <algorithm>

#include "bands/AsciiText.h"

namespace kest {
namespace {

/// One placeholder of a pattern.
struct Placeholder {
    bool leftAligned = false;
    bool zeroFilled = false;
    char16_t sign = u'\0';  ///< put before a number that is not negative: '+', ' ' or none
    std::size_t width = 0;
    char16_t conversion = u'\0';
    std::size_t length = 0;  ///< characters of the pattern that it takes
};

void addFlag(Placeholder& placeholder, char16_t flag) {
    placeholder.leftAligned |= flag == u'-';
    placeholder.zeroFilled |= flag == u'0';
    if (flag == u'+' || (flag == u' ' && placeholder.sign == u'\0')) {
        placeholder.sign = flag;
    }
}

/// Reads the placeholder at the start of `text`, which begins with "%"; its length is 0 when there
/// is none.
Placeholder parsePlaceholder(std::u16string_view text) {
    constexpr std::u16string_view kFlags = u"-+ 0#";
    constexpr std::u16string_view kConversions = u"diu";
    Placeholder placeholder;
    std::size_t i = 1;
    for (; i < text.size() && kFlags.find(text[i]) != kFlags.npos; ++i) {
        addFlag(placeholder, text[i]);
    }
    for (; i < text.size() && isDigit(text[i]); ++i) {
        placeholder.width = std::min<std::size_t>(
            placeholder.width * 10 + static_cast<std::size_t>(text[i] - u'0'), kMaxNameLength);
    }
    if (i < text.size() && kConversions.find(text[i]) != kConversions.npos) {
        placeholder.conversion = text[i];
        placeholder.length = i + 1;
    }
    return placeholder;
}

std::u16string formatNumber(const Placeholder& placeholder, int value) {
    const bool isUnsigned = placeholder.conversion == u'u';
    const std::string digits = isUnsigned ? std::to_string(static_cast<unsigned int>(value))
                                          : std::to_string(static_cast<long long>(value));
    std::u16string number(digits.begin(), digits.end());
    if (!isUnsigned && value >= 0 && placeholder.sign != u'\0') {
        number.insert(0, 1, placeholder.sign);
    }
    const std::size_t fill = placeholder.width - std::min(placeholder.width, number.size());
    if (placeholder.leftAligned) {
        number.append(fill, u' ');
    } else if (placeholder.zeroFilled) {
        number.insert(isDigit(number.front()) ? 0 : 1, fill, u'0');
    } else {
        number.insert(0, fill, u' ');
    }
    return number;
}

}  // namespace

std::u16string formatInteger(std::u16string_view pattern, int value) {
    std::u16string text;
    while (!pattern.empty() && text.size() < kMaxNameLength) {
        std::size_t taken = 1;
        if (pattern.starts_with(u"%%")) {
            text.push_back(u'%');
            taken = 2;
        } else if (const Placeholder placeholder =
                       pattern.front() == u'%' ? parsePlaceholder(pattern) : Placeholder();
                   placeholder.length > 0) {
            text += formatNumber(placeholder, value);
            taken = placeholder.length;
        } else {
            text.push_back(pattern.front());
        }
        pattern.remove_prefix(taken);
    }
    text.resize(std::min(text.size(), kMaxNameLength));
    return text;
}

}  // namespace kest
