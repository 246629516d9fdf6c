#include "tool/scene/BandSelection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

std::vector<Band> sampleBands() {
    std::vector<Band> bands(5);
    const char* const names[] = {"Blue (band 1)", "Near infrared", "SWIR 1", "Thermal", "a,b"};
    const char* const common[] = {"blue", "nir", "swir16", "lwir", ""};
    for (std::size_t i = 0; i < bands.size(); ++i) {
        bands[i].frame = static_cast<int>(i);
        bands[i].number = static_cast<int>(i) + 10;
        bands[i].name = names[i];
        bands[i].commonName = common[i];
        bands[i].componentPath = "dir/scene_B" + std::to_string(i + 1) + ".TIF";
    }
    bands[4].componentPath = "dir/[1].tif";
    return bands;
}

TEST(BandSelection, TakesEveryNameOfABandInTheOrderGiven) {
    const std::vector<Band> bands = sampleBands();
    const std::pair<Words, std::vector<int>> cases[] = {
        {{"near INFRARED", "blue"}, {1, 0}},
        {{"nir,blue", "#3"}, {1, 0, 3}},
        {{"12", "10"}, {2, 0}},
        {{"swir*", "*_b1*", "scene_B2"}, {2, 0, 1}},
        {{"scene_B4.TIF", "dir/scene_B1.TIF"}, {3, 0}},
        {{"blue", "Blue (band 1)", "*"}, {0, 1, 2, 3, 4}},
        {{"a,b"}, {4}},
        {{"[1]"}, {4}},
        {{}, {}},
    };
    for (const auto& [words, expected] : cases) {
        std::vector<int> frames;
        for (const Band* band : selectBands(bands, words)) {
            frames.push_back(band->frame);
        }
        EXPECT_EQ(frames, expected) << testing::PrintToString(words);
    }
    EXPECT_EQ(selectBand(bands, "lwir").frame, 3);
}

TEST(BandSelection, RefusesWhatNamesNoBandOrSeveral) {
    const std::vector<Band> bands = sampleBands();
    const std::pair<Words, const char*> cases[] = {
        {{"blue,mauve"}, "mauve: no such band; there are Blue (band 1), Near infrared"},
        {{"blue,"}, "'': no such band"},
        {{"#5"}, "#5: no such band"},
        {{"q*"}, "q*: no such band"},
    };
    for (const auto& [words, message] : cases) {
        try {
            selectBands(bands, words);
            ADD_FAILURE() << message;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::Usage);
            EXPECT_THAT(failure.what(), HasSubstr(message));
        }
    }
    EXPECT_THROW(selectBand(bands, "*B*"), Failure);
}

}  // namespace
}  // namespace kestms
