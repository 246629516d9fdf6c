#include "sets/SetMembership.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/fakes/Codecs.h"

namespace {

using kest::InclusionData;
using kest::Verdict;

class MeasureTest : public testing::Test {
  protected:
    Verdict measure(const fakes::FileFacts& facts, int frame = 0) {
        codec_.add("f", facts);
        return kest::measureComponent({Pyxis::fileSpecifier("f"), frame}, codec_, data_);
    }
    Verdict measure(const fakes::FrameFacts& facts) {
        return measure(fakes::FileFacts{false, {facts}});
    }
    Verdict measure(std::vector<fakes::PropertyPointer> properties) {
        fakes::FrameFacts frame;
        frame.properties = std::move(properties);
        return measure(frame);
    }

    fakes::World world_;
    fakes::Codec codec_{world_};
    InclusionData data_;
};

TEST_F(MeasureTest, MapsCornersWithScaleAfterRotation) {
    const fakes::GeoFacts facts{.originX = 10.0,
                                .originY = 20.0,
                                .pixelX = 2.0,
                                .pixelY = 3.0,
                                .scaleX = 10.0,
                                .rotation = std::acos(-1.0) / 2,
                                .width = 4,
                                .height = 5,
                                .system = "somewhere"};
    ASSERT_EQ(measure({fakes::property<fakes::PlainProperty>("first"),
                       fakes::property<fakes::Geo>(facts)}),
              Verdict::Accepted);
    const std::pair<Pyxis::Point2d, Pyxis::Point2d> corners[] = {
        {data_.lowerLeft, {10.0, 20.0}},
        {data_.upperLeft, {10.0 - 20.0 * 5, 20.0}},
        {data_.upperRight, {10.0 - 20.0 * 5, 20.0 + 3.0 * 4}},
        {data_.lowerRight, {10.0, 20.0 + 3.0 * 4}}};
    for (const auto& [corner, wanted] : corners) {
        EXPECT_NEAR(corner.x, wanted.x, 1e-9);
        EXPECT_NEAR(corner.y, wanted.y, 1e-9);
    }
    EXPECT_EQ(data_.coordinateSystemCode, 0);
    EXPECT_EQ(Pyxis::toUtf8(data_.coordinateSystem), "somewhere");
    EXPECT_EQ(world_.alive, 0);
    EXPECT_THAT(world_.events, testing::ElementsAre("open f", "delete properties", "delete frame",
                                                    "delete image"));
}

TEST_F(MeasureTest, TakesTheCornersThatATiffKnows) {
    fakes::GeoTiff geo(fakes::GeoFacts{});
    geo.upperRight = {7.0, 8.0};
    ASSERT_EQ(measure({fakes::property<fakes::GeoTiff>(geo),
                       fakes::property<fakes::Geo>(fakes::GeoFacts{})}),
              Verdict::Accepted);
    EXPECT_EQ(data_.upperRight.x, 7.0);
    EXPECT_EQ(data_.upperRight.y, 8.0);
}

TEST_F(MeasureTest, TellsWhatIsMissing) {
    EXPECT_EQ(measure(fakes::FileFacts{true, {}}), Verdict::CannotOpen);
    EXPECT_EQ(measure(fakes::FileFacts{false, {fakes::bandFrame()}}, 1), Verdict::NoSuchFrame);
    fakes::FrameFacts frame;
    EXPECT_EQ(measure(frame), Verdict::NoGeoreference);
    frame.noProperties = true;
    EXPECT_EQ(measure(frame), Verdict::NoGeoreference);
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(MeasureTest, RefusesTwoLayoutsOfSingleChannels) {
    struct Layout {
        int model, bits, format;
        bool refused;
    };
    for (const Layout& each :
         {Layout{0, 32, 1, true}, Layout{0, 32, 4, true}, Layout{0, 16, 4, true},
          Layout{0, 16, 2, false}, Layout{0, 64, 4, false}, Layout{2, 32, 1, false}}) {
        fakes::FrameFacts frame = fakes::bandFrame();
        frame.model = each.model;
        frame.bits = each.bits;
        frame.format = each.format;
        EXPECT_EQ(measure(frame), each.refused ? Verdict::LayoutRefused : Verdict::Accepted)
            << each.model << ' ' << each.bits << ' ' << each.format;
    }
}

InclusionData square() {
    InclusionData data;
    data.pixelBits = 8;
    data.upperLeft = {0.0, 1000.0};
    data.upperRight = {1000.0, 1000.0};
    data.lowerRight = {1000.0, 0.0};
    data.coordinateSystem = Pyxis::toWideBuffer("here");
    return data;
}

TEST(CompareTest, AllowsFivePerCentOfTheExtentAtEveryCorner) {
    Pyxis::Point2d InclusionData::*const corners[] = {
        &InclusionData::upperLeft, &InclusionData::upperRight, &InclusionData::lowerLeft,
        &InclusionData::lowerRight};
    for (int corner = 0; corner < 4; ++corner) {
        for (double Pyxis::Point2d::*const axis : {&Pyxis::Point2d::x, &Pyxis::Point2d::y}) {
            for (const double off :
                 {50.0, -50.0, 50.001, -50.001, std::numeric_limits<double>::quiet_NaN()}) {
                InclusionData candidate = square();
                candidate.*corners[corner].*axis += off;
                kest::CornerDeviation found;
                const Verdict verdict = kest::compareWithCriteria(candidate, square(), 0.05, found);
                EXPECT_EQ(verdict, std::abs(off) <= 50.0 ? Verdict::Accepted : Verdict::CornerOff);
                if (verdict != Verdict::Accepted) {
                    EXPECT_EQ(static_cast<int>(found.corner), corner);
                    EXPECT_EQ(found.axis == kest::Axis::X, axis == &Pyxis::Point2d::x);
                    EXPECT_EQ(found.tolerance, 50.0);
                }
            }
        }
    }
}

TEST(CompareTest, TakesCodesBeforeTextsOfCoordinateSystems) {
    struct Systems {
        int code, criteriaCode;
        const char* text;
        bool same;
    };
    for (const Systems& each : {Systems{1, 1, "there", true}, Systems{0, 0, "there", false},
                                Systems{-1, -1, "there", false}, Systems{1, 2, "there", false},
                                Systems{1, 2, "here", true}, Systems{0, 0, "here", true}}) {
        InclusionData candidate = square();
        candidate.coordinateSystemCode = each.code;
        candidate.coordinateSystem = Pyxis::toWideBuffer(each.text);
        InclusionData criteria = square();
        criteria.coordinateSystemCode = each.criteriaCode;
        kest::CornerDeviation off;
        EXPECT_EQ(kest::compareWithCriteria(candidate, criteria, 0.05, off),
                  each.same ? Verdict::Accepted : Verdict::SystemDiffers);
    }
    InclusionData other = square();
    other.pixelBits = 16;
    kest::CornerDeviation off;
    EXPECT_EQ(kest::compareWithCriteria(other, square(), 0.05, off), Verdict::LayoutDiffers);
}

}  // namespace
