#include <algorithm>
#include <array>

#include "bands/AsciiText.h"
#include "bands/FileName.h"
#include "bands/schemes/Schemes.h"

namespace kest {
namespace {

using enum BandType;
using enum BandAssignment;
using namespace string_id;

constexpr BucketRow kReflective{kLandsatReflective, 0};
constexpr BucketRow kThermal{kLandsatThermal, 1};

/// Spectra are from the U.S. Geological Survey's list of the Landsat satellites' band
/// designations; both gains of band 6 come from one detector. Numbers follow the wavelength, so
/// "B70" comes before the thermal bands.
constexpr std::array kBands{
    ProductBand{
        u"B10", {kLandsatB10, Blue, BlueChannel, 0, Spectrum::between(450, 520)}, kReflective},
    ProductBand{
        u"B20", {kLandsatB20, Green, GreenChannel, 1, Spectrum::between(520, 600)}, kReflective},
    ProductBand{
        u"B30", {kLandsatB30, Red, RedChannel, 2, Spectrum::between(630, 690)}, kReflective},
    ProductBand{u"B40",
                {kLandsatB40, NearInfrared, NotAssigned, 3, Spectrum::between(770, 900)},
                kReflective},
    ProductBand{u"B50",
                {kLandsatB50, MidInfrared, NotAssigned, 4, Spectrum::between(1550, 1750), "swir16"},
                kReflective},
    ProductBand{u"B61",
                {kLandsatB61, ThermalLowGain, NotAssigned, 6, Spectrum::between(10400, 12500)},
                kThermal},
    ProductBand{u"B62",
                {kLandsatB62, ThermalHighGain, NotAssigned, 7, Spectrum::between(10400, 12500)},
                kThermal},
    ProductBand{u"B70",
                {kLandsatB70, MidInfrared, NotAssigned, 5, Spectrum::between(2090, 2350), "swir22"},
                kReflective},
    ProductBand{u"B80",
                {kLandsatB80, Panchromatic, NotAssigned, 8, Spectrum::between(520, 900)},
                {kLandsatPanchromatic, 2}},
};

/// Header and metadata files of a scene, which hold no band of their own.
constexpr std::array<std::u16string_view, 4> kSideFiles{u"HPN", u"HRF", u"HTM", u"MTL"};

/// "L7", path and row, "_", and dates, which every file of a scene begins with.
constexpr std::u16string_view kSceneForm = u"L7#######_###########";

/// The upper-cased text after the scene's name and "_"; empty when the name is too short.
std::u16string codeOf(std::u16string_view name) {
    return upperCase(name.substr(std::min(kSceneForm.size() + 1, name.size())));
}

/// The scene's name, "_", a code.
bool isScene(std::u16string_view name) {
    const bool isFormed =
        name.size() > kSceneForm.size() && name[kSceneForm.size()] == u'_' &&
        std::equal(kSceneForm.begin(), kSceneForm.end(), name.begin(),
                   [](char16_t form, char16_t actual) {
                       return form == u'#' ? isDigit(actual) : form == toUpper(actual);
                   });
    const std::u16string code = codeOf(name);
    return isFormed && (findBand(kBands, code) != nullptr ||
                        std::find(kSideFiles.begin(), kSideFiles.end(), code) != kSideFiles.end());
}

bool isFastHeader(const platform::PathName& name) {
    return equalIgnoringCase(name.extension, u".FST");
}

std::optional<Identity> identify(const BandFile& band) {
    return identityIn(kBands, codeOf(fileNameOf(band.file).name));
}

std::optional<std::u16string> referenceName(const BandFile& first) {
    return upperCase(fileNameOf(first.file).name.substr(0, kSceneForm.size()));
}

}  // namespace

constexpr Scheme kLandsat7Scheme{
    SchemeLandsat7,
    "landsat-7",
    "\"L7\" names",
    [](const Pyxis::FileSpecifier&, const platform::PathName& name) {
        return isScene(name.name) && !isFastHeader(name);
    },
    identify,
    referenceName,
};

constexpr Scheme kLandsat7FastScheme{
    SchemeLandsat7Fast,
    "landsat-7-fast",
    "\"L7\" names, FAST headers",
    [](const Pyxis::FileSpecifier&, const platform::PathName& name) {
        return isScene(name.name) && isFastHeader(name);
    },
    identify,
    referenceName,
};

bool isLandsat7Name(const Pyxis::FileSpecifier& file) {
    return isScene(fileNameOf(file).name);
}

}  // namespace kest
