#include <gtest/gtest.h>

#include "tests/tool/Process.h"

namespace kestms {
namespace {

class Loading : public InDirectory {
  protected:
    /// Whether a run of the tool, which must succeed, loads GDAL.
    bool loadsGdal(const Strings& arguments) {
        const std::string log = directory_ / "loads";
        const Outcome outcome = runKestms(arguments, [&log] {
            setenv("LD_DEBUG", "files", 1);
            setenv("LD_DEBUG_OUTPUT", log.c_str(), 1);
        });
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        std::string loads;
        for (const std::string& name : fakes::namesIn(directory_)) {
            if (name.starts_with("loads.")) {
                loads += fakes::readFile(directory_ / name);
                std::filesystem::remove(directory_ / name);
            }
        }
        EXPECT_NE(loads.find("libPyxisCodecs"), std::string::npos);
        return loads.find("libgdal") != std::string::npos;
    }
};

TEST_F(Loading, LoadsGdalOnlyWhereItIsNeeded) {
    const Strings files = writeLandsat(directory_);
    for (const Strings& without : std::vector<Strings>{{"--help"},
                                                       {"export", "--help"},
                                                       {"--version"},
                                                       {"products"},
                                                       {"scenes", directory_.path()},
                                                       joined({"list"}, files),
                                                       joined({"check"}, files),
                                                       joined({"info"}, files),
                                                       joined({"info", "--json"}, files)}) {
        EXPECT_FALSE(loadsGdal(without)) << without.back();
    }
    const std::string packed = write("packed.tif", {.bands = 2, .options = {"COMPRESS=PACKBITS"}});
    EXPECT_TRUE(loadsGdal({"info", packed}));
    EXPECT_TRUE(loadsGdal(joined({"vrt", "-o", directory_ / "set.vrt"}, files)));
}

}  // namespace
}  // namespace kestms
