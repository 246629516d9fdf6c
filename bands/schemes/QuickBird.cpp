#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string>

#include "bands/BandIdentification.h"
#include "bands/StringValue.h"
#include "bands/schemes/Schemes.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FileReadDescriptor.h"
#include "sets/FindCodec.h"

namespace kest {
namespace {

using enum BandType;
using enum BandAssignment;
using namespace string_id;

/// A band that a band list can hold, by the sensor's band digit.
struct ListedBand {
    char digit;
    BandRow band;
};

/// A known band list, padded with blanks.
struct BandList {
    std::string_view list;
    BucketRow bucket;
    std::array<ListedBand, 4> bands;
};

constexpr ListedBand kBlue{'1', {kQuickBirdBlue, Blue, BlueChannel, 0}};
constexpr ListedBand kGreen{'2', {kQuickBirdGreen, Green, GreenChannel, 1}};
constexpr ListedBand kRed{'3', {kQuickBirdRed, Red, RedChannel, 2}};
constexpr ListedBand kInfrared{'4', {kQuickBirdNearInfrared, NearInfrared, NotAssigned, 3}};
constexpr ListedBand kNone{'\0', {}};

constexpr std::array kBandLists{
    BandList{"1234", {kQuickBirdList1234, 1}, {kBlue, kGreen, kRed, kInfrared}},
    BandList{"321 ", {kQuickBirdList321, 1}, {kBlue, kGreen, kRed, kNone}},
    // A colour-infrared composite: each band feeds the channel of the next shorter wavelength.
    BandList{"432 ",
             {kQuickBirdList432, 1},
             {ListedBand{'2', {kQuickBirdGreen, Green, BlueChannel, 1}},
              ListedBand{'3', {kQuickBirdRed, Red, GreenChannel, 2}},
              ListedBand{'4', {kQuickBirdNearInfrared, NearInfrared, RedChannel, 3}}, kNone}},
    BandList{"1   ",
             {kQuickBirdList1, 0},
             {ListedBand{'1', {kQuickBirdPanchromatic, Panchromatic, NotAssigned, 0}}, kNone, kNone,
              kNone}},
};

constexpr std::string_view kHeader = "{\n  bandList = \n";
constexpr int kImageDescription = 9;
constexpr std::size_t kListLength = 4;
/// Replaces a band list that is too long to be a known one.
constexpr std::string_view kOverlongList = "****";

/// The bytes up to the terminator, whatever character type the codec declares.
std::string bytesOf(const Pyxis::StringBuffer& value) {
    std::string bytes;
    if (value.numDataBytes() > 0) {
        bytes.assign(reinterpret_cast<const char*>(value.data()),
                     static_cast<std::size_t>(value.numDataBytes()));
    }
    return bytes.substr(0, bytes.find('\0'));
}

/// The name of the image description property of a TIFF codec of either kind; false for others.
bool imageDescriptionName(const Pyxis::ImageFormatCodec* codec, Pyxis::StringBuffer& name) {
    if (const auto* quickBird = dynamic_cast<const QBTiffFormatCodec*>(codec)) {
        quickBird->getPropertyName(kImageDescription, name);
        return true;
    }
    if (const auto* tiff = dynamic_cast<const TiffFormatCodec*>(codec)) {
        tiff->getPropertyName(kImageDescription, name);
        return true;
    }
    return false;
}

/// The image description of a file that a TIFF codec reads, when it begins with a band list's
/// header; nothing otherwise, and when the host throws.
std::optional<std::string> readDescription(const Pyxis::FileSpecifier& file,
                                           const Pyxis::ImageFormatCodec* codec) {
    try {
        Pyxis::StringBuffer name;
        if (!imageDescriptionName(codec, name)) {
            return std::nullopt;
        }
        Pyxis::FileReadDescriptor descriptor(file, codec);
        const std::optional<Pyxis::StringBuffer> value = stringValue(descriptor, name);
        if (std::string text = value ? bytesOf(*value) : std::string(); text.starts_with(kHeader)) {
            return text;
        }
    } catch (...) {
        // A file whose codec fails here has no band list.
    }
    return std::nullopt;
}

std::string digitsIn(std::string_view description) {
    std::string digits;
    std::copy_if(description.begin(), description.end(), std::back_inserter(digits),
                 [](char character) { return character >= '0' && character <= '9'; });
    return digits;
}

/// Null for an unknown list.
const BandList* knownList(std::string_view list) {
    const auto known = std::find_if(kBandLists.begin(), kBandLists.end(),
                                    [list](const BandList& each) { return each.list == list; });
    return known == kBandLists.end() ? nullptr : &*known;
}

std::string whyGeneric(const BandFile& band) {
    const auto description = readDescription(band.file, findCodec(band.file));
    if (!description) {
        return "it has no band list";
    }
    const std::string digits = digitsIn(*description);
    std::string padded = digits;
    padded.resize(std::max(digits.size(), kListLength), ' ');
    if (knownList(padded) == nullptr) {
        return "its band list is \"" + digits + "\", not 1234, 321, 432 or 1";
    }
    return band.frame < static_cast<int>(digits.size())
               ? ""
               : "its band list \"" + digits + "\" is shorter than the file's bands";
}

std::optional<Identity> identify(const BandFile& band) {
    const std::unique_ptr<char[]> code = getQuickBirdBandList(band.file);
    const std::string_view list = code ? std::string_view(code.get()) : std::string_view();
    const BandList* known = knownList(list);
    if (known == nullptr) {
        return Identity::generic(band.ordinal);
    }
    const bool isListed = band.frame >= 0 && band.frame < static_cast<int>(list.size());
    const char digit = isListed ? list[static_cast<std::size_t>(band.frame)] : ' ';
    const auto row = std::find_if(known->bands.begin(), known->bands.end(),
                                  [digit](const ListedBand& each) { return each.digit == digit; });
    return Identity(row == known->bands.end() ? BandRow() : row->band, known->bucket);
}

}  // namespace

constexpr Scheme kQuickBirdScheme{
    SchemeQuickBird,
    "quickbird",
    "TIFF files with a QuickBird band list",
    [](const Pyxis::FileSpecifier& file, const platform::PathName&) {
        return isQuickBirdFile(file);
    },
    identify,
    fileNameAsReference,
    whyGeneric,
};

bool isQuickBirdFile(const Pyxis::FileSpecifier& file) {
    const Pyxis::ImageFormatCodec* codec = findCodec(file);
    return dynamic_cast<const QBTiffFormatCodec*>(codec) != nullptr ||
           readDescription(file, codec).has_value();
}

std::unique_ptr<char[]> getQuickBirdBandList(const Pyxis::FileSpecifier& component) {
    std::optional<std::string> text;
    try {
        text = readDescription(component, findCodec(component));
    } catch (...) {
        return nullptr;
    }
    if (!text) {
        return nullptr;
    }
    std::string digits = digitsIn(*text);
    if (digits.size() > kListLength) {
        digits = kOverlongList;
    }
    digits.resize(kListLength, ' ');
    auto list = std::make_unique<char[]>(kListLength + 1);
    digits.copy(list.get(), kListLength);
    return list;
}

}  // namespace kest
