#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/tool/Process.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/Progress.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// Which files the commands write, replace and leave alone.
using Outputs = InDirectory;

TEST_F(Outputs, TheOutputIsTheFileThatWasNamed) {
    const Strings files = {write("a_01.tif"), write("a_02.tif")};
    const auto before = fakes::namesIn(directory_);
    const std::string x = directory_ / "x";
    const std::pair<const char*, std::string> wrong[] = {
        {"vrt", x + ".tif"}, {"export", x + ".VRT"},    {"export", x + ".png"},
        {"export", "-"},     {"export", "/dev/stdout"}, {"quicklook", x + ".tif"},
        {"quicklook", "-"},  {"list", x + ".tif"},      {"list", x + ".vrt"}};
    for (const auto& [command, output] : wrong) {
        const Outcome outcome = runKestms(joined({command, "-o", output}, files));
        EXPECT_EQ(outcome.code, 2) << command << output;
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(fakes::namesIn(directory_), before);
    EXPECT_EQ(runKestms(joined({"list", "-o", "-"}, files)).out,
              runKestms(joined({"list"}, files)).out);
    fakes::writeFile(directory_ / "piped.vrt", runKestms(joined({"vrt", "-o", "-"}, files)).out);
    EXPECT_EQ(gdalInfo(directory_ / "piped.vrt")["bands"][1]["checksum"],
              gdalInfo(files[1])["bands"][0]["checksum"]);
}

const Strings kCommands[] = {{"list"}, {"vrt"}, {"export"}, {"quicklook"}};

TEST_F(Outputs, LeavesNothingBehindWhenItFails) {
    const Strings files = writeLandsat(directory_);
    ASSERT_EQ(mkfifo((directory_ / "pipe").c_str(), 0600), 0);
    const auto before = fakes::namesIn(directory_);
    const std::pair<std::string, const char*> cases[] = {
        {directory_.path(), "s a directory\n"},
        {directory_ / "slash/", "s a directory\n"},
        {directory_ / "none/out", "No such file"},
        {directory_ / "pipe", "not a regular file"},
    };
    for (const auto& [output, reason] : cases) {
        for (const Strings& command : kCommands) {
            const Outcome outcome = runTool(joined(command, joined(files, {"-o", output})));
            EXPECT_EQ(outcome.code, static_cast<int>(ExitCode::CannotWrite))
                << command[0] << output;
            EXPECT_THAT(outcome.err, HasSubstr(reason));
            EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
        }
    }
    EXPECT_EQ(fakes::namesIn(directory_), before);
    EXPECT_TRUE(fs::is_fifo(directory_ / "pipe"));
}

/// Everything named, listed or found in a named folder, used or not, and the files that belong to
/// it.
TEST_F(Outputs, AnOutputNeverReplacesAnInput) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const std::string fast = directory_ / "landsat7-fast/";
    const std::string product = directory_ / "po-product/";
    const std::string scenes = directory_ / "landsat9/";
    const std::string own = directory_ / "own/";
    fakes::writeFile(own + "notes/read.me", "text");
    const std::string scene = scenes + "LC09_L1TP_193026_20250712_20250712_02_T1_B";
    const std::string otherScene =
        write("landsat9/LC09_L1TP_193027_20250712_20250712_02_T1_B2.TIF");
    const Strings pair = {write("own/v1.tif"), write("own/v2.tif")};
    fakes::writeFile(own + "damaged.tif", fakes::readFile(pair[0]).substr(0, 300));
    const char* const sideFiles[] = {"v1.tfw",         "v1.tifw",    "v2.wld",
                                     "v1.tif.aux.xml", "v2.tif.ovr", "v1.TIF.msk",
                                     "v1.aux",         "MTL.txt",    "v1.xml"};
    fakes::writeFile(own + "old.vrt", "<text/>");
    const std::string list = directory_ / "list";
    fakes::writeFile(list, pair[0] + "\n" + pair[1] + "\n" + own + "damaged.tif\n");
    const std::string document = directory_ / "damaged.xml";
    fakes::writeFile(document, runTool({"list", pair[0], pair[1], own + "damaged.tif"}).out);
    const std::string archive = directory_ / "scene.tar";
    runProgram({"tar", "-cf", archive, "-C", own, "v1.tif", "v2.tif"});
    const std::string archived = directory_ / "archived.xml";
    fakes::writeFile(archived, runTool({"list", archive}).out);
    const std::string catalogue = directory_ / "mine.xml";
    fakes::writeFile(catalogue,
                     "<catalogue version='1'><product id='a'><name>A</name><file>[a]_{band}</file>"
                     "<bucket id='b' number='0'/><band code='B4' type='red'/></product>"
                     "</catalogue>");
    std::vector<std::pair<Strings, std::string>> cases = {
        {{fast + "set.xml"}, fast + "set.xml"},
        {{fast + "set.xml"}, fast + "L71026029_02920000609_HRF.FST"},
        {{fast + "set.xml"}, fast + "L71026029_02920000609_B10.FST"},
        {{"@" + list}, list},
        {{product}, product + "po_1234567_metadata.txt"},
        {{own}, own + "damaged.tif"},
        {{document}, own + "damaged.tif"},
        {{"@" + list}, own + "damaged.tif"},
        {pair, pair[1]},
        {{archived}, archive},
        {{own}, own + "notes/read.me"},
        {{scenes, "--scene", "*193026*"}, otherScene},
        {{scenes + "*9302*", "--scene", "*193026*"}, otherScene},
        {{scene + "2.TIF", scene + "3.TIF", otherScene, "--scene", "*193026*"}, otherScene},
        {joined(pair, {"--products", catalogue}), catalogue},
    };
    for (const char* name : sideFiles) {
        fakes::writeFile(own + name, "<text/>");
        cases.emplace_back(pair, own + name);
    }
    for (const auto& [inputs, output] : cases) {
        const std::string before = fakes::readFile(output);
        for (const Strings& command : kCommands) {
            const Outcome outcome =
                runTool(joined(joined(command, inputs), {"--overwrite", "-o", output}));
            EXPECT_EQ(outcome.code, 2) << command[0] << " " << output << outcome.err;
            // The others may refuse the extension first.
            if (command[0] == "list") {
                EXPECT_THAT(outcome.err, HasSubstr("would overwrite"));
            }
        }
        EXPECT_EQ(fakes::readFile(output), before);
    }
    fakes::writeFile(own + "set.xml", runTool(joined({"list"}, pair)).out);
    for (const auto& [command, name] : {std::pair("list", "set.xml"), {"vrt", "old.vrt"}}) {
        const Strings line = joined({command, "-o", own + name}, pair);
        EXPECT_THAT(runTool(line).err, HasSubstr("--overwrite"));
        EXPECT_EQ(runTool(joined(line, {"--overwrite"})).code, 0);
    }
}

TEST(ProgressBar, ShowsOnATerminalOnlyAndEndsWithTheUsersPatience) {
    std::ostringstream shown;
    std::ostringstream hidden;
    const InterruptGuard guard;
    {
        ProgressBar bar(shown, true);
        ProgressBar silent(hidden, isTerminal(hidden));
        bar.show(0.5);
        bar.show(0.501);
        silent.show(0.5);
        static_cast<void>(std::raise(SIGINT));
        EXPECT_THROW(bar.show(0.6), Failure);
    }
    EXPECT_THAT(shown.str(), StartsWith("\r[####################....................]  50 %\r"));
    EXPECT_EQ(hidden.str(), "");
}

}  // namespace
}  // namespace kestms
