#include "host/gdal/SampleTypes.h"

#include <gdal_priv.h>

#include <algorithm>
#include <iterator>

namespace Pyxis {
namespace {

struct SampleType {
    SampleFormat format;
    std::int32_t bits;
    GDALDataType type;
};

/// The sample types of buffers. The first entry with a format and size counts.
constexpr SampleType kSampleTypes[] = {
    {SampleFormat::UnsignedInteger, 8, GDT_Byte},
    {SampleFormat::UnsignedInteger, 16, GDT_UInt16},
    {SampleFormat::UnsignedInteger, 32, GDT_UInt32},
    {SampleFormat::UnsignedInteger, 64, GDT_UInt64},
    {SampleFormat::SignedInteger, 16, GDT_Int16},
    {SampleFormat::SignedInteger, 32, GDT_Int32},
    {SampleFormat::SignedInteger, 64, GDT_Int64},
    {SampleFormat::Complex, 32, GDT_CInt16},
    {SampleFormat::Complex, 64, GDT_CFloat32},
    {SampleFormat::Complex, 64, GDT_CInt32},
    {SampleFormat::Complex, 128, GDT_CFloat64},
    {SampleFormat::FloatingPoint, 32, GDT_Float32},
    {SampleFormat::FloatingPoint, 64, GDT_Float64},
};

/// Whether bytes are signed; this version of GDAL has no type for them.
bool holdsSignedBytes(GDALRasterBand& band) {
    const char* meaning = band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE");
    return band.GetRasterDataType() == GDT_Byte && meaning != nullptr &&
           EQUAL(meaning, "SIGNEDBYTE");
}

}  // namespace

std::optional<GDALDataType> sampleTypeOf(SampleFormat format, std::int32_t bits) {
    const auto* found = std::find_if(std::begin(kSampleTypes), std::end(kSampleTypes),
                                     [format, bits](const SampleType& sample) {
                                         return sample.format == format && sample.bits == bits;
                                     });
    return found != std::end(kSampleTypes) ? std::optional(found->type) : std::nullopt;
}

SampleFormat sampleFormatOf(GDALRasterBand& band) {
    return holdsSignedBytes(band) ? SampleFormat::SignedInteger
                                  : sampleFormatOf(band.GetRasterDataType());
}

SampleFormat sampleFormatOf(GDALDataType type) {
    const auto* found =
        std::find_if(std::begin(kSampleTypes), std::end(kSampleTypes),
                     [type](const SampleType& sample) { return sample.type == type; });
    return found == std::end(kSampleTypes) ? SampleFormat::UnsignedInteger : found->format;
}

}  // namespace Pyxis
