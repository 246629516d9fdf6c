#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

#include "pyxis/Utf8.h"

namespace Pyxis {
namespace {

constexpr char16_t kEscapeBase = 0xDC80;
constexpr unsigned char kContinuation = 0x80;

/// Copies the ASCII characters at the start, which are the same in every encoding; returns how many
/// there are. Most texts are ASCII throughout. `text` are the bytes of `size` characters, which
/// need not be aligned. Local blocks, which nothing else points into, become vector instructions.
template <typename From, typename To>
std::size_t copyAscii(const void* text, std::size_t size, std::basic_string<To>& out) {
    constexpr std::size_t kBlock = 16;
    using Unsigned = std::make_unsigned_t<From>;
    const auto* bytes = static_cast<const unsigned char*>(text);
    out.resize(size);
    std::size_t done = 0;
    while (size - done >= kBlock) {
        std::array<From, kBlock> from{};
        std::array<To, kBlock> to{};
        std::memcpy(from.data(), bytes + done * sizeof(From), sizeof from);
        Unsigned all = 0;
        for (std::size_t i = 0; i < kBlock; ++i) {
            all = static_cast<Unsigned>(all | static_cast<Unsigned>(from[i]));
            to[i] = static_cast<To>(from[i]);
        }
        if (all >= 0x80) {
            break;
        }
        std::memcpy(out.data() + done, to.data(), sizeof to);
        done += kBlock;
    }
    for (; done < size; ++done) {
        From character{};
        std::memcpy(&character, bytes + done * sizeof(From), sizeof character);
        if (static_cast<Unsigned>(character) >= 0x80) {
            break;
        }
        out[done] = static_cast<To>(character);
    }
    out.resize(done);
    return done;
}

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

void appendUtf8(char32_t value, std::string& out) {
    char bytes[kLongestUtf8];
    out.append(bytes, putUtf8(value, bytes));
}

}  // namespace

std::u16string utf8ToWide(std::string_view text) {
    std::u16string wide;
    text.remove_prefix(copyAscii<char>(text.data(), text.size(), wide));
    while (!text.empty()) {
        char32_t value = 0;
        const std::size_t length = getUtf8(text, value);
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
    std::size_t i = copyAscii<char16_t>(text.data(), text.size(), bytes);
    for (; i < text.size(); ++i) {
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
    if (buffer.type() == CharacterType::Wide) {
        const std::size_t size = static_cast<std::size_t>(buffer.numDataBytes()) / 2;
        std::string text;
        if (copyAscii<char16_t>(buffer.data(), size, text) < size) {
            return wideToUtf8(wideCharacters(buffer));
        }
        text.resize(std::min(text.find('\0'), size));
        return text;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(buffer.data()),
                                 static_cast<std::size_t>(buffer.numDataBytes()));
    return std::string(bytes.substr(0, bytes.find('\0')));
}

std::u16string wideCharacters(const StringBuffer& buffer) {
    const unsigned char* bytes = buffer.data();
    const std::size_t most = static_cast<std::size_t>(buffer.numDataBytes()) / 2;
    std::u16string text(most, u'\0');
    if (most > 0) {
        std::memcpy(text.data(), bytes, most * 2);
    }
    // The terminator is nearly always the last character, so whole blocks are skipped first.
    constexpr std::size_t kBlock = 16;
    std::size_t length = 0;
    const auto hasZero = [](const char16_t* block) {
        unsigned int zeros = 0;
        for (std::size_t i = 0; i < kBlock; ++i) {
            zeros |= static_cast<unsigned int>(block[i] == 0);
        }
        return zeros != 0;
    };
    while (most - length >= kBlock && !hasZero(text.data() + length)) {
        length += kBlock;
    }
    text.resize(std::min(text.find(u'\0', length), most));
    return text;
}

StringBuffer toWideBuffer(std::string_view utf8) {
    const std::u16string text = utf8ToWide(utf8);
    return {static_cast<int>((text.size() + 1) * 2),
            reinterpret_cast<const unsigned char*>(text.c_str()), CharacterType::Wide};
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), lowered);
    return text;
}

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return lowered(a) == lowered(b); });
}

FileSpecifier fileSpecifier(std::string_view path) {
    return {toWideBuffer(path), FileSpecifier::Type::PlainFile};
}

}  // namespace Pyxis
