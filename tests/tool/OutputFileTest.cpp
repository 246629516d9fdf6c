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
using fakes::namesIn;
using testing::ElementsAre;

TEST(OutputFile, AppearsWithCommitOnlyBehindALinkToo) {
    const fakes::TempDirectory directory;
    fakes::writeFile(directory / "old.tif", "old");
    fs::create_symlink("old.tif", directory / "link.tif");
    {
        OutputFile file(directory / "old.tif");
        file.write("half");
        fakes::writeFile(file.temporaryPath() + ".aux.xml", "beside");
    }
    EXPECT_THAT(namesIn(directory), ElementsAre("link.tif", "old.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "old");
    OutputFile file(directory / "link.tif");
    EXPECT_EQ(fs::path(file.temporaryPath()).extension(), ".tif");
    file.write("first, and longer");
    file.write("new");
    file.commit();
    EXPECT_TRUE(fs::is_symlink(directory / "link.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "new");
    EXPECT_THAT(namesIn(directory), ElementsAre("link.tif", "old.tif"));
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

}  // namespace
}  // namespace kestms
