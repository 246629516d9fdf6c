#include <sys/resource.h>

#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

/// Sets how many files the process may open, restored on destruction.
class DescriptorLimit {
  public:
    explicit DescriptorLimit(rlim_t limit) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const struct rlimit lower { limit, before_.rlim_max };
        setrlimit(RLIMIT_NOFILE, &lower);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    struct rlimit before_ {};
};

/// All remaining descriptors of the process.
std::vector<std::ifstream> allDescriptors() {
    std::vector<std::ifstream> taken;
    do {
        taken.emplace_back("/dev/null");
    } while (taken.back().is_open());
    return taken;
}

class Descriptors : public OnFiles {
  protected:
    /// Rasters whose pixels were read, so that each is open.
    std::vector<std::unique_ptr<Opened>> openFiles(int count) {
        std::vector<std::unique_ptr<Opened>> all;
        for (int i = 0; i < count; ++i) {
            all.push_back(std::make_unique<Opened>(
                fakes::writeRaster(directory / ("r" + std::to_string(i) + ".tif"))));
            EXPECT_FALSE(all.back()->pixels().empty());
        }
        return all;
    }
};

TEST_F(Descriptors, WhenThereAreNoneIdleFilesAreClosed) {
    const std::string plain = fakes::writeRaster(directory / "plain.tif");
    const std::string other = fakes::writeRaster(directory / "other.tif", {.description = "x"});
    const DescriptorLimit limit(100);
    const Opened notYetRead(plain);
    const auto open = openFiles(6);
    ASSERT_EQ(openBelow(directory.path()).size(), 6U);
    const auto taken = allDescriptors();
    EXPECT_FALSE(notYetRead.pixels().empty());
    EXPECT_FALSE(Opened(other).pixels().empty());
    EXPECT_FALSE(open.front()->pixels().empty());
}

TEST_F(Descriptors, OpenFilesFollowTheLimitOfTheProcess) {
    const auto open = openFiles(40);
    ASSERT_EQ(openBelow(directory.path()).size(), 40U);
    const std::string other = fakes::writeRaster(directory / "other.tif");
    const DescriptorLimit limit(80);
    EXPECT_FALSE(Opened(other).pixels().empty());
    EXPECT_LE(openBelow(directory.path()).size(), 20U);
}

}  // namespace
