#pragma once

// Ids of the texts in the string-resource module.

namespace kest::string_id {

inline constexpr unsigned int kFormatName = 18100;
inline constexpr unsigned int kFormatDescription = 18101;
inline constexpr unsigned int kCopyright = 18102;
/// Language of the texts ("de"); selects names from other sources.
inline constexpr unsigned int kLanguage = 18103;
inline constexpr unsigned int kGenericBucketPattern = 18105;
inline constexpr unsigned int kGenericBandPattern = 18106;
inline constexpr unsigned int kReferenceNameName = 18107;
inline constexpr unsigned int kReferenceNameDescription = 18108;
inline constexpr unsigned int kBandNameName = 18109;
inline constexpr unsigned int kBandNameDescription = 18110;
inline constexpr unsigned int kBucketName = 18111;
inline constexpr unsigned int kBucketDescription = 18112;
inline constexpr unsigned int kMetadataTextFileName = 18113;
inline constexpr unsigned int kMetadataTextFileDescription = 18114;
inline constexpr unsigned int kUnrecognised = 18115;
inline constexpr unsigned int kBandTypeName = 18116;
inline constexpr unsigned int kBandTypeDescription = 18117;

// "po_" and NITF products: buckets, then bands.
inline constexpr unsigned int kProductMultispectral = 18200;
inline constexpr unsigned int kProductPanchromaticBucket = 18201;
inline constexpr unsigned int kProductRed = 18210;
inline constexpr unsigned int kProductGreen = 18211;
inline constexpr unsigned int kProductBlue = 18212;
inline constexpr unsigned int kProductNearInfrared = 18213;
inline constexpr unsigned int kProductPanchromatic = 18214;

// Landsat 7: buckets, then bands.
inline constexpr unsigned int kLandsatReflective = 18300;
inline constexpr unsigned int kLandsatThermal = 18301;
inline constexpr unsigned int kLandsatPanchromatic = 18302;
inline constexpr unsigned int kLandsatB10 = 18310;
inline constexpr unsigned int kLandsatB20 = 18311;
inline constexpr unsigned int kLandsatB30 = 18312;
inline constexpr unsigned int kLandsatB40 = 18313;
inline constexpr unsigned int kLandsatB50 = 18314;
inline constexpr unsigned int kLandsatB61 = 18315;
inline constexpr unsigned int kLandsatB62 = 18316;
inline constexpr unsigned int kLandsatB70 = 18317;
inline constexpr unsigned int kLandsatB80 = 18318;

// QuickBird TIFF: bands, then buckets by band list.
inline constexpr unsigned int kQuickBirdRed = 18319;
inline constexpr unsigned int kQuickBirdGreen = 18320;
inline constexpr unsigned int kQuickBirdBlue = 18321;
inline constexpr unsigned int kQuickBirdNearInfrared = 18322;
inline constexpr unsigned int kQuickBirdPanchromatic = 18323;
inline constexpr unsigned int kQuickBirdList1234 = 18324;
inline constexpr unsigned int kQuickBirdList321 = 18325;
inline constexpr unsigned int kQuickBirdList432 = 18326;
inline constexpr unsigned int kQuickBirdList1 = 18327;

}  // namespace kest::string_id
