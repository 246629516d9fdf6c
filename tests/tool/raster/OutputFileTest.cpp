#include "tool/raster/OutputFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/fakes/Rasters.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

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
        const InterruptGuard guard;
        OutputFile file(directory / "old.tif");
        file.write("half");
        fakes::writeFile(file.temporaryPath() + ".aux.xml", "beside");
        std::raise(SIGTERM);
        EXPECT_THROW(file.commit(), Failure);
    }
    EXPECT_THAT(namesIn(directory), ElementsAre("link.tif", "old.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "old");
    const InterruptGuard nextRun;
    OutputFile file(directory / "link.tif");
    EXPECT_EQ(fs::path(file.temporaryPath()).extension(), ".tif");
    file.write("first, and longer");
    file.write("new");
    file.commit();
    EXPECT_TRUE(fs::is_symlink(directory / "link.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "new");
    EXPECT_THAT(namesIn(directory), ElementsAre("link.tif", "old.tif"));
}

}  // namespace
}  // namespace kestms
