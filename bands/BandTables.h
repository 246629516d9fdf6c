#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "bands/BandTypes.h"
#include "codec/strings/StringIds.h"

// The band lists of the sensors: "po_" products and NITF, Landsat 7, QuickBird.

namespace kest {

/// How a band is named, typed, shown and sorted.
struct BandRow {
    unsigned int nameId = string_id::kUnrecognised;
    BandType type = BandType::Unknown;
    BandAssignment assignment = BandAssignment::NotAssigned;
    int number = kUnrecognisedNumber;
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

/// The band of that code; null when the product has none.
template <std::size_t Size>
constexpr const ProductBand* findBand(const std::array<ProductBand, Size>& bands,
                                      std::u16string_view code) {
    const auto band = std::find_if(bands.begin(), bands.end(),
                                   [code](const ProductBand& each) { return each.code == code; });
    return band == bands.end() ? nullptr : &*band;
}

namespace tables {

using enum BandType;
using enum BandAssignment;
using namespace string_id;

inline constexpr BucketRow kMultispectralBucket{kProductMultispectral, 1};
inline constexpr BucketRow kPanchromaticBucket{kProductPanchromaticBucket, 0};

/// Band codes of "po_" names. Numbers leave 0 to the panchromatic band, so blue begins at 1.
inline constexpr std::array kPoBands{
    ProductBand{u"RED", {kProductRed, Red, RedChannel, 3}, kMultispectralBucket},
    ProductBand{u"GRN", {kProductGreen, Green, GreenChannel, 2}, kMultispectralBucket},
    ProductBand{u"BLU", {kProductBlue, Blue, BlueChannel, 1}, kMultispectralBucket},
    ProductBand{u"NIR", {kProductNearInfrared, NearInfrared, NotAssigned, 4}, kMultispectralBucket},
    ProductBand{u"PAN", {kProductPanchromatic, Panchromatic, NotAssigned, 0}, kPanchromaticBucket},
};

/// Band representation letters of NITF files.
inline constexpr std::array kNitfBands{
    ProductBand{u"R", {kProductRed, Red, RedChannel, 2}, kMultispectralBucket},
    ProductBand{u"G", {kProductGreen, Green, GreenChannel, 1}, kMultispectralBucket},
    ProductBand{u"B", {kProductBlue, Blue, BlueChannel, 0}, kMultispectralBucket},
    ProductBand{u"N", {kProductNearInfrared, NearInfrared, NotAssigned, 3}, kMultispectralBucket},
    ProductBand{u"M", {kProductPanchromatic, Panchromatic, NotAssigned, 0}, kPanchromaticBucket},
};

inline constexpr BucketRow kReflectiveBucket{kLandsatReflective, 0};
inline constexpr BucketRow kThermalBucket{kLandsatThermal, 1};
inline constexpr BucketRow kLandsatPanBucket{kLandsatPanchromatic, 2};

/// Band codes of "L7" names. Numbers follow the wavelength, so "B70" comes before the thermal
/// bands.
inline constexpr std::array kLandsat7Bands{
    ProductBand{u"B10", {kLandsatB10, Blue, BlueChannel, 0}, kReflectiveBucket},
    ProductBand{u"B20", {kLandsatB20, Green, GreenChannel, 1}, kReflectiveBucket},
    ProductBand{u"B30", {kLandsatB30, Red, RedChannel, 2}, kReflectiveBucket},
    ProductBand{u"B40", {kLandsatB40, NearInfrared, NotAssigned, 3}, kReflectiveBucket},
    ProductBand{u"B50", {kLandsatB50, MidInfrared, NotAssigned, 4}, kReflectiveBucket},
    ProductBand{u"B61", {kLandsatB61, ThermalLowGain, NotAssigned, 6}, kThermalBucket},
    ProductBand{u"B62", {kLandsatB62, ThermalHighGain, NotAssigned, 7}, kThermalBucket},
    ProductBand{u"B70", {kLandsatB70, MidInfrared, NotAssigned, 5}, kReflectiveBucket},
    ProductBand{u"B80", {kLandsatB80, Panchromatic, NotAssigned, 8}, kLandsatPanBucket},
};

/// The bands that each known band list of QuickBird files can hold, by the sensor's band digit.
struct QuickBirdBand {
    std::string_view list;
    char digit;
    BandRow band;
};

inline constexpr std::array kQuickBirdBands{
    QuickBirdBand{"1234", '1', {kQuickBirdBlue, Blue, BlueChannel, 0}},
    QuickBirdBand{"1234", '2', {kQuickBirdGreen, Green, GreenChannel, 1}},
    QuickBirdBand{"1234", '3', {kQuickBirdRed, Red, RedChannel, 2}},
    QuickBirdBand{"1234", '4', {kQuickBirdNearInfrared, NearInfrared, NotAssigned, 3}},
    QuickBirdBand{"321 ", '1', {kQuickBirdBlue, Blue, BlueChannel, 0}},
    QuickBirdBand{"321 ", '2', {kQuickBirdGreen, Green, GreenChannel, 1}},
    QuickBirdBand{"321 ", '3', {kQuickBirdRed, Red, RedChannel, 2}},
    // A colour-infrared composite: each band feeds the channel of the next shorter wavelength.
    QuickBirdBand{"432 ", '2', {kQuickBirdGreen, Green, BlueChannel, 1}},
    QuickBirdBand{"432 ", '3', {kQuickBirdRed, Red, GreenChannel, 2}},
    QuickBirdBand{"432 ", '4', {kQuickBirdNearInfrared, NearInfrared, RedChannel, 3}},
    QuickBirdBand{"1   ", '1', {kQuickBirdPanchromatic, Panchromatic, NotAssigned, 0}},
};

/// The band lists that are known, with the bucket of their bands.
struct QuickBirdList {
    std::string_view list;
    BucketRow bucket;
};

inline constexpr std::array kQuickBirdLists{
    QuickBirdList{"1234", {kQuickBirdList1234, 1}},
    QuickBirdList{"321 ", {kQuickBirdList321, 1}},
    QuickBirdList{"432 ", {kQuickBirdList432, 1}},
    QuickBirdList{"1   ", {kQuickBirdList1, 0}},
};

}  // namespace tables
}  // namespace kest
