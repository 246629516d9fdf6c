#include "bands/IntegerPattern.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "bands/AsciiText.h"

namespace kest {
namespace {

/// Widths and precisions past this make no difference: the text is cut before.
constexpr int kMaxCount = 1000;

/// One placeholder of a pattern.
struct Placeholder {
    std::string flags;
    int width = 0;
    int precision = -1;  ///< negative: none
    char conversion = '\0';
    std::size_t length = 0;  ///< characters of the pattern that it takes
};

/// Removes and returns the leading characters of `text` that are in `set`.
std::string takeAny(std::u16string_view& text, std::u16string_view set) {
    const std::u16string_view taken = text.substr(0, text.find_first_not_of(set));
    text.remove_prefix(taken.size());
    return {taken.begin(), taken.end()};
}

/// Removes and returns the leading number of `text`; 0 without one.
int takeCount(std::u16string_view& text) {
    int count = 0;
    for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
        count = std::min(count * 10 + (text.front() - u'0'), kMaxCount);
    }
    return count;
}

/// Reads the placeholder at the start of `text`, which begins with "%"; its length is 0 if it is
/// invalid.
Placeholder parsePlaceholder(std::u16string_view text) {
    constexpr std::u16string_view kConversions = u"diuxXo";
    std::u16string_view rest = text.substr(1);
    Placeholder placeholder;
    placeholder.flags = takeAny(rest, u"-+ 0#");
    placeholder.width = takeCount(rest);
    if (rest.starts_with(u'.')) {
        rest.remove_prefix(1);
        placeholder.precision = takeCount(rest);
    }
    takeAny(rest, u"hl");  // The number is an int whatever size the pattern claims.
    if (!rest.empty() && kConversions.find(rest.front()) != kConversions.npos) {
        placeholder.conversion = static_cast<char>(rest.front());
        placeholder.length = text.size() - rest.size() + 1;
    }
    return placeholder;
}

std::u16string formatNumber(const Placeholder& placeholder, int value) {
    const std::string format = "%" + placeholder.flags + "*.*" + placeholder.conversion;
    std::array<char, kMaxNameLength + 1> text{};
    const auto print = [&](auto number) {
        std::snprintf(text.data(), text.size(), format.c_str(), placeholder.width,
                      placeholder.precision, number);
    };
    if (placeholder.conversion == 'd' || placeholder.conversion == 'i') {
        print(value);
    } else {
        print(static_cast<unsigned int>(value));
    }
    const std::string_view printed = text.data();
    return {printed.begin(), printed.end()};
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
