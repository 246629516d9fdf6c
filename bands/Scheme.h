#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "bands/BandTypes.h"
#include "bands/NamingScheme.h"
#include "codec/strings/StringIds.h"
#include "platform/Platform.h"
#include "pyxis/FileSpecifier.h"

// A naming scheme is one file in bands/schemes and one row in the table there. This record holds
// everything that differs between schemes.

namespace kest {

/// A name for users: a text of the string-resource module, or a literal text.
struct Name {
    unsigned int id = string_id::kUnrecognised;
    std::optional<int> argument;         ///< fills text `id`, a pattern
    std::optional<std::u16string> text;  ///< replaces text `id`
};

/// A row of a sensor's band table.
struct BandRow {
    unsigned int nameId = string_id::kUnrecognised;
    BandType type = BandType::Unknown;
    BandAssignment assignment = BandAssignment::NotAssigned;
    int number = kUnrecognisedNumber;
    std::optional<Spectrum> spectrum = {};
    std::string_view commonName = {};  ///< if the type does not determine it (see commonNameOf)
};

/// How a bucket is named and sorted.
struct BucketRow {
    unsigned int nameId = string_id::kUnrecognised;
    int number = kUnrecognisedNumber;
};

/// One band of a product, by the code in its file name or metadata.
struct ProductBand {
    std::u16string_view code;
    BandRow band;
    BucketRow bucket;
};

/// A band's identity, and that of the bucket that it would start.
struct Identity {
    Name bandName;
    BandType type = BandType::Unknown;
    BandAssignment assignment = BandAssignment::NotAssigned;
    int bandNumber = kUnrecognisedNumber;
    BandDetails details;
    Name bucketName;
    int bucketNumber = kUnrecognisedNumber;

    Identity() = default;
    Identity(const BandRow& band, const BucketRow& bucket);
    /// Of a band known only by its number in the order of discovery.
    static Identity generic(int ordinal);
};

/// A band in its file.
struct BandFile {
    const Pyxis::FileSpecifier& file;
    int frame = 0;
    int ordinal = 0;                   ///< number of bands, or of buckets, found so far plus one
    const Product* product = nullptr;  ///< of a set that follows a catalogue product
};

/// The file's name without directory and extension, as several schemes name a set.
std::optional<std::u16string> fileNameAsReference(const BandFile& first);

struct Scheme {
    NamingScheme number;
    std::string_view word;     ///< stable, for output that programs read
    std::string_view meaning;  ///< what files of the scheme have in common, for users
    /// Whether a component follows the scheme; null for schemes that only a whole set can follow.
    bool (*matches)(const Pyxis::FileSpecifier& file, const platform::PathName& name);
    /// Nothing when the band cannot be identified at all.
    std::optional<Identity> (*identify)(const BandFile& band);
    /// The name that a set's bands share, from its first component; nothing when there is none.
    std::optional<std::u16string> (*referenceName)(const BandFile& first);
    /// Why a band of the scheme has a generic name, in English; empty when it has a specific one.
    std::string (*whyGeneric)(const BandFile& band) = nullptr;
};

/// All schemes in the order of trial, those that match single components first.
std::span<const Scheme* const> schemes();

/// The scheme of that number; null outside 1 to 9.
const Scheme* schemeOf(int number);

/// The row of that code in a table; null when there is none.
template <typename Table>
constexpr const ProductBand* findBand(const Table& bands, std::u16string_view code) {
    const auto band = std::find_if(bands.begin(), bands.end(),
                                   [code](const ProductBand& each) { return each.code == code; });
    return band == bands.end() ? nullptr : &*band;
}

/// The band of that code in a table; an unrecognised one when there is none.
template <typename Table>
Identity identityIn(const Table& bands, std::u16string_view code) {
    const ProductBand* row = findBand(bands, code);
    return row == nullptr ? Identity() : Identity(row->band, row->bucket);
}

}  // namespace kest
