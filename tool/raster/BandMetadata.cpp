#include "tool/raster/BandMetadata.h"

#include "tool/terminal/NumberText.h"

namespace kestms {

using kest::BandAssignment;

GDALColorInterp colourOf(const Band& band) {
    switch (band.assignment) {
        case BandAssignment::RedChannel:
            return GCI_RedBand;
        case BandAssignment::GreenChannel:
            return GCI_GreenBand;
        case BandAssignment::BlueChannel:
            return GCI_BlueBand;
        case BandAssignment::NotAssigned:
            break;
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
