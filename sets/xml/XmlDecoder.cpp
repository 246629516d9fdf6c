#include "sets/xml/XmlDecoder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "pyxis/Utf8.h"
#include "sets/xml/XmlText.h"

namespace kest::xml {
namespace {

/// Bounds on the expansion of entities; past them a reference stays as written. The bytes are in
/// proportion to the document, so that a short one cannot expand to a very long one.
constexpr std::size_t kDeepestReplacement = 1000;
constexpr std::size_t kReplacedBytesAtLeast = std::size_t{4} << 20U;
constexpr std::size_t kReplacedBytesPerByte = 8;
constexpr std::size_t kReplacedBytesAtMost = std::size_t{64} << 20U;

std::size_t mostReplacedBytes(std::size_t documentSize) {
    return std::min(kReplacedBytesAtMost,
                    kReplacedBytesAtLeast + kReplacedBytesPerByte * documentSize);
}

/// The entities that XML 1.0 predefines (section 4.6). Each stands for a reference to its
/// character, which takes kPredefinedLength characters ("&#38;").
struct PredefinedEntity {
    std::string_view reference;
    char character;
};
constexpr PredefinedEntity kPredefinedEntities[] = {
    {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
constexpr std::size_t kPredefinedLength = 5;

constexpr CharacterSet kTextMarks("&\r");
constexpr CharacterSet kCDataMarks("\r");
constexpr CharacterSet kEntityValueMarks("&%\r");
constexpr CharacterSet kAttributeMarks("&\r\n\t");

const CharacterSet& marksOf(DecodeMode mode) {
    switch (mode) {
        case DecodeMode::CData:
            return kCDataMarks;
        case DecodeMode::EntityValue:
            return kEntityValueMarks;
        case DecodeMode::Attribute:
            return kAttributeMarks;
        case DecodeMode::Text:
            break;
    }
    return kTextMarks;
}

int digitValue(char c, unsigned int base) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return base == 16 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The largest value that a UTF-8 sequence of up to six bytes encodes.
constexpr std::uint32_t kLargestCharacter = 0x7FFFFFFF;

/// A reference that stands for one character.
struct CharacterReference {
    std::uint32_t value = 0;
    std::size_t length = 0;  ///< 0: no reference, or one to be left alone
    bool grows = false;      ///< its replacement text is longer than the reference
};

CharacterReference numericReference(std::string_view text) {
    if (text.size() < 4) {
        return {};
    }
    const unsigned int base = text[2] == 'x' ? 16 : 10;
    std::size_t at = base == 16 ? 3 : 2;
    std::uint64_t value = 0;
    int digit = -1;
    while (at < text.size() && (digit = digitValue(text[at], base)) >= 0) {
        value = std::min<std::uint64_t>(value * base + static_cast<unsigned int>(digit),
                                        std::uint64_t{kLargestCharacter} + 1);
        ++at;
    }
    if (value == 0 || value > kLargestCharacter || at == text.size() || text[at] != ';') {
        return {};
    }
    return {static_cast<std::uint32_t>(value), at + 1};
}

CharacterReference characterReference(std::string_view text, DecodeMode mode) {
    if (text[0] != '&' || mode == DecodeMode::CData) {
        return {};
    }
    if (text.substr(1, 1) == "#") {
        return numericReference(text);
    }
    if (mode != DecodeMode::EntityValue) {
        for (const PredefinedEntity& each : kPredefinedEntities) {
            if (text.starts_with(each.reference)) {
                const std::size_t length = each.reference.size();
                return {static_cast<unsigned char>(each.character), length,
                        kPredefinedLength > length};
            }
        }
    }
    return {};
}

}  // namespace

const std::string_view* Decoder::replacementFor(const Source& source, DecodeMode mode) const {
    const bool inValue = mode == DecodeMode::EntityValue;
    if (mode == DecodeMode::CData || source.text[source.at] != (inValue ? '%' : '&')) {
        return nullptr;
    }
    const std::string_view name = referenceName(source.text.substr(source.at));
    if (!inValue) {
        return document_.entity(name);
    }
    const auto found = parameterEntities_.find(name);
    return found == parameterEntities_.end() ? nullptr : &found->second;
}

Decoder::Result Decoder::decode(char* run, std::size_t length, DecodeMode mode) {
    const CharacterSet& marks = marksOf(mode);
    Source source{{run, length}, 0};
    source.at = marks.find(source.text, 0);
    char* out = run + source.at;
    bool moved = false;
    while (source.at < length) {
        const char c = source.text[source.at];
        const auto reference = characterReference(source.text.substr(source.at), mode);
        if (reference.length != 0) {
            // Never longer than the reference.
            out = Pyxis::putUtf8(reference.value, out);
            source.at += reference.length;
            moved = moved || reference.grows;
        } else if (replacementFor(source, mode) != nullptr) {
            const Result done{{run, static_cast<std::size_t>(out - run)}, moved};
            return expand(done, source.text.substr(source.at), mode);
        } else if (c == '\r') {
            *out++ = mode == DecodeMode::Attribute ? ' ' : '\n';
            source.at += source.at + 1 < length && source.text[source.at + 1] == '\n' ? 2 : 1;
        } else {
            *out++ = mode == DecodeMode::Attribute && isSpace(c) ? ' ' : c;
            ++source.at;
        }
        const std::size_t next = marks.find(source.text, source.at);
        out = std::copy(run + source.at, run + next, out);
        source.at = next;
    }
    return {{run, static_cast<std::size_t>(out - run)}, moved};
}

/// Decodes the rest of a run from its first reference to a declared entity on, into new memory.
/// `done` is the part already decoded.
Decoder::Result Decoder::expand(const Result& done, std::string_view rest, DecodeMode mode) {
    const std::size_t mostBytes = mostReplacedBytes(document_.source_.size());
    bool moved = done.moved;
    expanded_.assign(done.text);
    sources_.assign(1, {rest, 0});
    while (!sources_.empty()) {
        Source& source = sources_.back();
        if (source.at == source.text.size()) {
            sources_.pop_back();
            continue;
        }
        const char c = source.text[source.at];
        const auto reference = characterReference(source.text.substr(source.at), mode);
        if (reference.length != 0) {
            char bytes[Pyxis::kLongestUtf8];
            expanded_.append(bytes, Pyxis::putUtf8(reference.value, bytes));
            source.at += reference.length;
            moved = moved || reference.grows;
        } else if (const auto* replacement = replacementFor(source, mode);
                   replacement != nullptr && sources_.size() <= kDeepestReplacement &&
                   document_.replacedBytes_ + replacement->size() <= mostBytes) {
            // Every reference costs a little, so that empty replacements are bounded as well.
            document_.replacedBytes_ += replacement->size() + 1;
            const std::size_t start =
                std::exchange(source.at, source.text.find(';', source.at) + 1);
            moved = moved || replacement->size() > source.at - start;
            sources_.push_back({*replacement, 0});
        } else if (c == '\r') {
            expanded_.push_back(mode == DecodeMode::Attribute ? ' ' : '\n');
            ++source.at;
            source.at += source.at < source.text.size() && source.text[source.at] == '\n' ? 1 : 0;
        } else {
            expanded_.push_back(mode == DecodeMode::Attribute && isSpace(c) ? ' ' : c);
            ++source.at;
        }
    }
    return {document_.keep(expanded_), moved};
}

}  // namespace kest::xml
