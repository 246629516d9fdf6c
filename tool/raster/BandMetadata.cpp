#include "tool/raster/BandMetadata.h"

#include "tool/raster/DisplayChannels.h"
#include "tool/terminal/NumberText.h"

namespace kestms {

GDALColorInterp colourOf(const Band& band) {
    for (const auto& [assignment, colour] : kDisplayChannels) {
        if (band.assignment == assignment) {
            return colour;
        }
    }
    return band.type == kest::BandType::Panchromatic ? GCI_GrayIndex : GCI_Undefined;
}

std::vector<MetadataItem> spectralMetadata(const Band& band) {
    if (!band.spectrum) {
        return {};
    }
    const std::string centre = numberText(band.spectrum->centre);
    const std::string width = numberText(band.spectrum->width);
    return {{"", "wavelength", centre},
            {"", "fwhm", width},
            {"", "wavelength_units", "Micrometers"},
            {"IMAGERY", "CENTRAL_WAVELENGTH_UM", centre},
            {"IMAGERY", "FWHM_UM", width}};
}

bool hasSignedBytes(const Band& band) {
    return band.bits == 8 && band.format == Pyxis::SampleFormat::SignedInteger;
}

}  // namespace kestms
