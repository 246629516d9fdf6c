#include "host/Text.h"

#include <array>
#include <cstdint>

namespace Pyxis {
namespace {

constexpr char16_t kEscapeBase = 0xDC80;
constexpr unsigned char kContinuation = 0x80;

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == kContinuation;
}

/// Length of the well-formed UTF-8 sequence at the start of `text`, with its value; 0 when there
/// is none.
std::size_t decodeSequence(std::string_view text, char32_t& value) {
    struct Form {
        unsigned char mask;
        unsigned char lead;
        std::size_t length;
        char32_t least;
    };
    static constexpr std::array<Form, 4> kForms{{{0x80, 0x00, 1, 0x0},
                                                 {0xE0, 0xC0, 2, 0x80},
                                                 {0xF0, 0xE0, 3, 0x800},
                                                 {0xF8, 0xF0, 4, 0x10000}}};
    const auto lead = static_cast<unsigned char>(text.front());
    for (const Form& form : kForms) {
        if ((lead & form.mask) != form.lead) {
            continue;
        }
        if (text.size() < form.length) {
            return 0;
        }
        value = lead & static_cast<unsigned char>(~form.mask);
        for (std::size_t i = 1; i < form.length; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if (!isContinuation(byte)) {
                return 0;
            }
            value = value << 6U | (byte & 0x3FU);
        }
        const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
        return value >= form.least && value <= 0x10FFFF && !surrogate ? form.length : 0;
    }
    return 0;
}

void appendUtf8(char32_t value, std::string& out) {
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (value < 0x80) {
        put(value);
    } else if (value < 0x800) {
        put(0xC0 | value >> 6U);
        put(kContinuation | (value & 0x3FU));
    } else if (value < 0x10000) {
        put(0xE0 | value >> 12U);
        put(kContinuation | (value >> 6U & 0x3FU));
        put(kContinuation | (value & 0x3FU));
    } else {
        put(0xF0 | value >> 18U);
        put(kContinuation | (value >> 12U & 0x3FU));
        put(kContinuation | (value >> 6U & 0x3FU));
        put(kContinuation | (value & 0x3FU));
    }
}

}  // namespace

std::u16string utf8ToWide(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        char32_t value = 0;
        const std::size_t length = decodeSequence(text, value);
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(text.front());
            wide.push_back(static_cast<char16_t>(kEscapeBase + (byte - kContinuation)));
            text.remove_prefix(1);
            continue;
        }
        if (value < 0x10000) {
            wide.push_back(static_cast<char16_t>(value));
        } else {
            wide.push_back(static_cast<char16_t>(0xD7C0 + (value >> 10U)));
            wide.push_back(static_cast<char16_t>(0xDC00 + (value & 0x3FFU)));
        }
        text.remove_prefix(length);
    }
    return wide;
}

std::string wideToUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
            appendUtf8(0x10000 + ((unit & 0x3FFU) << 10U) + (next & 0x3FFU), bytes);
            ++i;
        } else if (unit >= kEscapeBase && unit < kEscapeBase + 0x80) {
            bytes.push_back(static_cast<char>(unit - kEscapeBase + kContinuation));
        } else {
            appendUtf8(unit, bytes);
        }
    }
    return bytes;
}

std::string toUtf8(const StringBuffer& buffer) {
    StringBuffer narrow;
    StringBuffer::convertString(buffer, narrow, CharacterType::Narrow);
    return reinterpret_cast<const char*>(narrow.data());
}

StringBuffer toWideBuffer(std::string_view utf8) {
    const std::u16string text = utf8ToWide(utf8);
    return {static_cast<int>((text.size() + 1) * 2),
            reinterpret_cast<const unsigned char*>(text.c_str()), CharacterType::Wide};
}

FileSpecifier fileSpecifier(std::string_view path) {
    return {toWideBuffer(path), FileSpecifier::Type::PlainFile};
}

}  // namespace Pyxis
