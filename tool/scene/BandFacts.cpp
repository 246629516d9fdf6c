#include "tool/scene/BandFacts.h"

#include "host/Text.h"
#include "tool/scene/Spectrum.h"
#include "tool/terminal/Words.h"

namespace kestms {
namespace {

using kest::BandAssignment;

GDALColorInterp colourOf(const BandView& band) {
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

/// Band items as ENVI headers name them, which GIS programs look for, and those of GDAL's own
/// IMAGERY domain.
std::vector<MetadataItem> spectralMetadata(int scheme, int bandNumber) {
    const auto range = spectralRangeOf(scheme, bandNumber);
    if (!range) {
        return {};
    }
    const std::string centre = numberText(range->centre);
    const std::string width = numberText(range->width);
    return {{"", "wavelength", centre},
            {"", "fwhm", width},
            {"", "wavelength_units", "Micrometers"},
            {"IMAGERY", "CENTRAL_WAVELENGTH_UM", centre},
            {"IMAGERY", "FWHM_UM", width}};
}

}  // namespace

BandFacts factsOf(const OpenedSet& set, const BandView& band) {
    const auto frame = set.openFrame(band.frame);
    const auto source =
        Pyxis::rasterSourceOf(Pyxis::fileSpecifier(band.componentPath), band.componentFrame);
    if (!source) {
        throw Failure(ExitCode::CannotRead, band.componentPath, "the band cannot be opened");
    }
    BandFacts facts;
    facts.description = band.name;
    facts.colour = colourOf(band);
    facts.metadata = spectralMetadata(set.view().scheme, band.number);
    Pyxis::ChannelRange range;
    frame->frameOp11(0, &range);
    if (range.hasNoData) {
        facts.noData = range.noData;
    }
    facts.type = GDALGetDataTypeByName(source->dataType.c_str());
    facts.signedBytes = facts.type == GDT_Byte && band.format == Pyxis::SampleFormat::SignedInteger;
    facts.block = {frame->frameOp9(), frame->frameOp10()};
    facts.source = *source;
    return facts;
}

}  // namespace kestms
