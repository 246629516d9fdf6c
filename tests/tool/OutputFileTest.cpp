#include "tool/OutputFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "fakes/Rasters.h"
#include "tool/Failure.h"
#include "tool/Interrupt.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

std::vector<std::string> namesIn(const fakes::TempDirectory& directory) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(OutputFile, AppearsWithCommitOnly) {
    const fakes::TempDirectory directory;
    fakes::writeFile(directory / "old.tif", "old");
    {
        OutputFile file(directory / "old.tif");
        file.write("half");
        fakes::writeFile(file.temporaryPath() + ".aux.xml", "beside");
    }
    EXPECT_THAT(namesIn(directory), ElementsAre("old.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "old");
    OutputFile file(directory / "old.tif");
    EXPECT_EQ(fs::path(file.temporaryPath()).extension(), ".tif");
    file.write("first, and longer");
    file.write("new");
    file.commit();
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "new");
    EXPECT_THAT(namesIn(directory), ElementsAre("old.tif"));
}

TEST(OutputFile, ReplacesTheFileBehindALink) {
    const fakes::TempDirectory directory;
    fakes::writeFile(directory / "real", "old");
    fs::create_symlink("real", directory / "link");
    OutputFile file(directory / "link");
    file.write("new");
    file.commit();
    EXPECT_TRUE(fs::is_symlink(directory / "link"));
    EXPECT_EQ(fakes::readFile(directory / "real"), "new");
}

TEST(OutputFile, LeavesNothingWhenInterrupted) {
    const fakes::TempDirectory directory;
    const InterruptGuard guard;
    try {
        OutputFile file(directory / "out");
        file.write("text");
        std::raise(SIGTERM);
        file.commit();
        FAIL() << "committed";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::Interrupted);
    }
    EXPECT_THAT(namesIn(directory), ElementsAre());
}

TEST(OutputFile, RefusesWhatCannotBeReplaced) {
    const fakes::TempDirectory directory;
    for (const std::string& path : {directory.path(), directory / "none/out", directory / "slash/",
                                    std::string("/dev/null"), std::string()}) {
        try {
            const OutputFile file(path);
            ADD_FAILURE() << path;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::CannotWrite) << path;
        }
    }
    EXPECT_THAT(namesIn(directory), ElementsAre());
}

}  // namespace
}  // namespace kestms
