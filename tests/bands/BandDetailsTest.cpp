#include <gtest/gtest.h>

#include "bands/BandIdentification.h"
#include "bands/NamingScheme.h"
#include "host/Text.h"

TEST(BandDetailsTest, StandBesideTheBandsRow) {
    const struct {
        int scheme;
        std::string path, commonName;
        double centre, width;
    } cases[] = {{kest::SchemeLandsat7, "L71026029_02920000609_B10", "blue", 0.485, 0.07},
                 {kest::SchemeLandsat7, "L71026029_02920000609_B50", "swir16", 1.65, 0.2},
                 {kest::SchemeLandsat7Fast, "L71026029_02920000609_B70", "swir22", 2.22, 0.26},
                 {kest::SchemeLandsat7, "L71026029_02920000609_B62", "lwir", 11.45, 2.1},
                 {kest::SchemeLandsat7, "L71026029_02920000609_HRF", "", 0, 0},
                 {kest::SchemePoProduct, "po_1_nir_0", "nir", 0, 0},
                 {kest::SchemePoProductNitf, "po_1_pan_0", "pan", 0, 0},
                 {kest::SchemeNumbered, "scene_04", "", 0, 0}};
    for (const auto& test : cases) {
        kest::BandTypeInfo info;
        kest::BandDetails details;
        kest::identifyBand({test.scheme, nullptr}, 1, Pyxis::fileSpecifier(test.path), 0, info,
                           details);
        EXPECT_EQ(details.commonName, test.commonName) << test.path;
        EXPECT_EQ(details.spectrum.has_value(), test.width > 0) << test.path;
        const kest::Spectrum spectrum = details.spectrum.value_or(kest::Spectrum());
        EXPECT_NEAR(spectrum.centre, test.centre, 1e-9) << test.path;
        EXPECT_NEAR(spectrum.width, test.width, 1e-9) << test.path;
    }
}
