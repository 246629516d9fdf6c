#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tool/RunTool.h"

namespace kestms {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ListAndCheck : public InDirectory {};

TEST_F(ListAndCheck, ListWritesAFileWithAbsolutePathsUnlessToldOtherwise) {
    const std::string set = directory_ / "s.xml";
    const std::string odd = write("b\xC3\xA9 \t\r\n\"<&\xFF.tif");
    EXPECT_EQ(runTool({"list", write("a.tif"), odd, "-o", set}).code, 0);
    EXPECT_EQ(runTool({"info", set, "--json"}).json()["bands"].size(), 2U);
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
    EXPECT_THAT(runTool({"list", "./a.tif", odd}).out,
                HasSubstr("path=\"" + (directory_ / "a.tif") + "\" frame=\"0\""));
    EXPECT_THAT(runTool({"list", "a.tif", odd, "--keep-paths"}).out, HasSubstr("path=\"a.tif\""));
    std::filesystem::current_path(previous);
}

TEST_F(ListAndCheck, ListRefusesNamesThatXmlCannotHold) {
    for (const char* name : {"b\x1B\x01.tif", "b\xEF\xBF\xBF.tif"}) {
        const Outcome refused = runTool({"list", write("a.tif"), write(name)});
        EXPECT_EQ(refused.code, 4);
        EXPECT_EQ(refused.out, "");
        EXPECT_THAT(refused.err, AllOf(HasSubstr("a set document cannot hold this name"),
                                       Not(HasSubstr("\x1B")), HasSubstr("/b")));
    }
}

TEST_F(ListAndCheck, WhatCannotBeReadIsLeftOutAndNamed) {
    const std::string text = directory_ / "text";
    const std::string none = directory_ / "none";
    fakes::writeFile(text, "text");
    const Strings files = {write("a.tif"), text, write("b.tif")};
    const std::string why = "kestms: " + text + ": left out: no known raster format\n";
    const Outcome pure = runTool(joined({"list", "--purify", none}, files));
    EXPECT_EQ(pure.code, 0);
    EXPECT_THAT(pure.out, AllOf(HasSubstr("a.tif"), HasSubstr("b.tif"), Not(HasSubstr(text)),
                                Not(HasSubstr("none"))));
    EXPECT_EQ(pure.err, "kestms: " + none + ": left out: No such file or directory\n" + why);
    const Outcome info = runTool(joined({"info", "--json"}, files));
    EXPECT_EQ(info.err, why);
    EXPECT_EQ(info.json()["bands"].size(), 2U);
    EXPECT_EQ(info.json()["files"].size(), 2U);
    EXPECT_EQ(runTool({"list", "--purify", files[0], text}).code, 1);
}

TEST_F(ListAndCheck, CheckExplainsEveryComponent) {
    fakes::writeFile(directory_ / "text", "text");
    struct Case {
        std::string file;
        std::string verdict;
        std::string reason;
    };
    // The first measurable one is 12 x 30 m wide: 18 m are 5 % of it.
    const Case cases[] = {
        {write("large.tif", {.type = GDT_Int32}), "layout-refused",
         "pixels of 32-bit single channel are not"},
        {write("first.tif"), "accepted", ""},
        {write("edge.tif", movedEast(18)), "accepted", ""},
        {write("off.tif", movedEast(-27)), "corner-off",
         "upper-left corner off by 27 in x: 7.5 % of the width, 5 % allowed"},
        {write("wide.tif", {.type = GDT_UInt16}), "layout-differs",
         "the pixel layout is 16-bit single channel, the set's is 8-bit single channel"},
        {write("zone.tif", {.epsg = 32633}), "system-differs",
         "the coordinate system is EPSG:32633, the set's is EPSG:32632"},
        {write("nowhere.tif", {.transform = {}, .epsg = 0}), "no-georeference",
         "it is not georeferenced"},
        {directory_ / "none.tif", "unreadable", "No such file or directory"},
        {directory_ / "text", "unreadable", "no known raster format"},
        {directory_ / "first.tif#3", "no-such-frame", "there is no frame 3"},
    };
    Strings arguments = {"check"};
    for (const Case& each : cases) {
        arguments.push_back(each.file);
    }
    const Outcome text = runTool(arguments);
    EXPECT_EQ(text.code, 1);
    EXPECT_EQ(text.err.find("kestms: " + cases[0].file + ": " + cases[0].reason), 0U) << text.err;
    EXPECT_THAT(text.out, HasSubstr("Not decodable: 2 of 10 components belong together, 2 cannot"));
    arguments.push_back("--json");
    const auto report = runTool(arguments).json();
    EXPECT_EQ(report["decodable"], false);
    EXPECT_EQ(report["reference"], 1);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& component = report["components"].at(i);
        EXPECT_EQ(component["verdict"], cases[i].verdict) << cases[i].file;
        EXPECT_EQ(component.value("reason", nlohmann::json()).dump().find(cases[i].reason),
                  cases[i].reason.empty() ? 0 : 1U)
            << component["reason"];
        EXPECT_THAT(text.out, HasSubstr(cases[i].reason));
    }
    const auto& off = report["components"][3]["cornerOff"];
    EXPECT_EQ(off["units"], 27.0);
    EXPECT_EQ(off["allowedUnits"], 18.0);
    EXPECT_DOUBLE_EQ(off["percent"], 7.5);
}

TEST_F(ListAndCheck, CheckReadsADocumentThatNamesNoFile) {
    const std::string component = "<component><data><file frame=\"0\"/></data></component>";
    const Outcome outcome = runTool({"check", "-", "--json"}, "<storage><image>" + component +
                                                                  component + "</image></storage>");
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.json()["answer"], 3);
    EXPECT_EQ(outcome.json()["components"][1]["verdict"], "no-path");
    EXPECT_EQ(outcome.err, "kestms: component 0: the component names no file\n");
}

TEST_F(ListAndCheck, CheckFollowsTheCodecsVerdict) {
    const std::string a = write("a.tif");
    const std::string b = write("b.tif");
    const std::string none = directory_ / "none";
    const Strings singles = {write("s1.tif", {.type = GDT_Float32}),
                             write("s2.tif", {.type = GDT_Float32})};
    const Strings doubles = {write("d1.tif", {.type = GDT_Float64}),
                             write("d2.tif", {.type = GDT_Float64})};
    const std::pair<Strings, int> cases[] = {
        {{a, b}, 0},
        {{a, none, b}, 0},
        {{a, none}, 3},
        {{a, write("far.tif", movedEast(1e6))}, 1},
        {singles, 0},
        {doubles, 0},
        {{singles[0], doubles[0]}, 1},
        {{singles[0], write("whole.tif", {.type = GDT_Int32})}, 1},
    };
    for (const auto& [files, code] : cases) {
        const Outcome outcome = runTool(joined({"check", "--json"}, files));
        EXPECT_EQ(outcome.code, code) << files.back();
        EXPECT_EQ(outcome.json()["decodable"], code == 0);
        EXPECT_EQ(outcome.err.empty(), code == 0);
    }
}

}  // namespace
}  // namespace kestms
