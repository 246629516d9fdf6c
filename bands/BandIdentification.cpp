#include "bands/BandIdentification.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "bands/AsciiText.h"
#include "bands/BandTables.h"
#include "bands/ComponentCodec.h"
#include "bands/FileName.h"
#include "bands/IntegerPattern.h"
#include "bands/NamingScheme.h"
#include "codec/strings/BufferText.h"
#include "codec/strings/StringResources.h"

namespace kest {
namespace {

constexpr std::size_t kBandListLength = 4;
/// Stands for a band list that is too long to be any that is known.
constexpr std::string_view kOverlongBandList = "****";

/// By which rule a band is named, and its rows where a table has it.
struct Identity {
    enum class Rule { Nothing, Generic, Numbered, Product };

    Rule rule = Rule::Nothing;
    BandRow band;
    BucketRow bucket;
};

/// The row of that code, or the unrecognised row under `otherwise`.
template <typename Table>
Identity lookUp(const Table& table, std::u16string_view code, Identity::Rule otherwise) {
    const ProductBand* row = findBand(table, code);
    return row == nullptr ? Identity{otherwise, {}, {}}
                          : Identity{Identity::Rule::Product, row->band, row->bucket};
}

Identity identifyQuickBird(const Pyxis::FileSpecifier& component, int frame) {
    using tables::kQuickBirdBands;
    using tables::kQuickBirdLists;
    const std::unique_ptr<char[]> code = getQuickBirdBandList(component);
    const std::string_view list = code ? std::string_view(code.get()) : std::string_view();
    const auto known =
        std::find_if(kQuickBirdLists.begin(), kQuickBirdLists.end(),
                     [list](const auto& candidate) { return candidate.list == list; });
    if (known == kQuickBirdLists.end()) {
        return {Identity::Rule::Generic, {}, {}};
    }
    Identity identity{Identity::Rule::Product, {}, known->bucket};
    if (frame < 0 || frame >= static_cast<int>(list.size())) {
        return identity;
    }
    const char digit = list[static_cast<std::size_t>(frame)];
    for (const tables::QuickBirdBand& row : kQuickBirdBands) {
        if (row.list == list && row.digit == digit) {
            identity.band = row.band;
        }
    }
    return identity;
}

Identity identifyNitf(const Pyxis::FileSpecifier& component, int frame) {
    const std::optional<std::u16string> letter = readNitfBandLetter(component, frame);
    if (!letter) {
        return {};
    }
    return lookUp(tables::kNitfBands, upperCase(*letter), Identity::Rule::Generic);
}

Identity identify(int scheme, const Pyxis::FileSpecifier& component, int frame) {
    switch (scheme) {
        case SchemeGeneric:
            return {Identity::Rule::Generic, {}, {}};
        case SchemeNumbered:
            return {Identity::Rule::Numbered, {}, {}};
        case SchemePoProduct:
        case SchemePoProductNitf:
            return lookUp(tables::kPoBands, poBandCode(fileNameOf(component).name),
                          Identity::Rule::Product);
        case SchemeLandsat7:
        case SchemeLandsat7Fast:
            return lookUp(tables::kLandsat7Bands, landsat7BandCode(fileNameOf(component).name),
                          Identity::Rule::Product);
        case SchemeQuickBird:
            return identifyQuickBird(component, frame);
        case SchemeNitf:
            return identifyNitf(component, frame);
        default:
            return {};
    }
}

/// The text of pattern `id` with the number in it.
Pyxis::StringBuffer patternName(unsigned int id, int number) {
    Pyxis::StringBuffer pattern;
    loadResourceString(id, pattern);
    return nameBuffer(formatInteger(wideText(pattern), number));
}

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

void fillNumbered(const Pyxis::FileSpecifier& component, BandTypeInfo& out) {
    const std::u16string name = fileNameOf(component).name;
    const std::u16string ending = name.substr(name.size() - std::min<std::size_t>(name.size(), 2));
    out.bandType = BandType::Unknown;
    out.bandAssignment = BandAssignment::NotAssigned;
    out.bandNumber = leadingInteger(ending);
    out.bandName = nameBuffer(u"B" + ending);
}

}  // namespace

void getBandTypeInfo(int scheme, int bandOrdinal, const Pyxis::FileSpecifier& component, int frame,
                     BandTypeInfo& out) {
    const Pyxis::FileSpecifier file = componentAt(component, bandOrdinal);
    const Identity identity = identify(scheme, file, frame);
    switch (identity.rule) {
        case Identity::Rule::Nothing:
            break;
        case Identity::Rule::Generic:
            out.bandType = BandType::Unknown;
            out.bandAssignment = BandAssignment::NotAssigned;
            out.bandNumber = bandOrdinal;
            out.bandName = patternName(string_id::kGenericBandPattern, bandOrdinal);
            break;
        case Identity::Rule::Numbered:
            fillNumbered(file, out);
            break;
        case Identity::Rule::Product:
            out.bandType = identity.band.type;
            out.bandAssignment = identity.band.assignment;
            out.bandNumber = identity.band.number;
            loadResourceString(identity.band.nameId, out.bandName);
            break;
    }
}

void getBucketInfo(int scheme, int bucketOrdinal, const Pyxis::FileSpecifier& component, int frame,
                   double /*vectorX*/, double /*vectorY*/, Pyxis::StringBuffer& bucketName,
                   int& bucketNumber) {
    const Identity identity = identify(scheme, componentAt(component, 0), frame);
    switch (identity.rule) {
        case Identity::Rule::Nothing:
            break;
        case Identity::Rule::Generic:
        case Identity::Rule::Numbered:
            bucketName = patternName(string_id::kGenericBucketPattern, bucketOrdinal);
            bucketNumber = bucketOrdinal;
            break;
        case Identity::Rule::Product:
            loadResourceString(identity.bucket.nameId, bucketName);
            bucketNumber = identity.bucket.number;
            break;
    }
}

std::unique_ptr<char[]> getQuickBirdBandList(const Pyxis::FileSpecifier& component) {
    std::optional<std::string> text;
    try {
        text = readBandListText(component, findCodec(component));
    } catch (...) {
        return nullptr;
    }
    if (!text) {
        return nullptr;
    }
    std::string digits;
    std::copy_if(text->begin(), text->end(), std::back_inserter(digits),
                 [](char character) { return character >= '0' && character <= '9'; });
    if (digits.size() > kBandListLength) {
        digits = kOverlongBandList;
    }
    digits.resize(kBandListLength, ' ');
    auto list = std::make_unique<char[]>(kBandListLength + 1);
    digits.copy(list.get(), kBandListLength);
    return list;
}

}  // namespace kest
