#include "tool/raster/XmlText.h"

#include "host/Text.h"

namespace kestms {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isIn(char16_t unit, char16_t first, char16_t last) {
    return unit >= first && unit <= last;
}

}  // namespace

std::string xmlText(std::string_view text) {
    // Invalid bytes become lone surrogates.
    std::u16string wide = Pyxis::utf8ToWide(text);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (isIn(wide[i], 0xD800, 0xDBFF) && i + 1 < wide.size() &&
            isIn(wide[i + 1], 0xDC00, 0xDFFF)) {
            ++i;
        } else if ((wide[i] < u' ' && wide[i] != u'\t' && wide[i] != u'\n' && wide[i] != u'\r') ||
                   isIn(wide[i], 0xD800, 0xDFFF) || wide[i] >= 0xFFFE) {
            wide[i] = kReplacement;
        }
    }
    return Pyxis::wideToUtf8(wide);
}

std::string escapedMarkup(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

}  // namespace kestms
