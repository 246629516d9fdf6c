#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/tool/Process.h"

namespace kestms {
namespace {

using testing::HasSubstr;

// Builds for debugging are slower than what users have, and sanitizers need room.
#if defined(NDEBUG)
constexpr double kMostSeconds = 2;
#else
constexpr double kMostSeconds = 20;
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(__clang__)
constexpr long kMostMegabytes = 2048;
#else
constexpr long kMostMegabytes = 300;
#endif

/// Of processes that have ended; their memory is that of the largest.
rusage usedByChildren() {
    rusage used{};
    getrusage(RUSAGE_CHILDREN, &used);
    return used;
}

double secondsOf(const rusage& used) {
    return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
}

class SmallInputs : public InDirectory {
  protected:
    std::string writeBands(const std::string& name, int bands) const {
        return write(name, {.width = 1, .height = 1, .bands = bands});
    }
};

TEST_F(SmallInputs, TakeLittleTimeAndMemory) {
    const std::string a = writeBands("a.tif", 4096);
    const std::string b = writeBands("b.tif", 4096);
    const std::string half = writeBands("half.tif", 1024);
    const std::string other = writeBands("other.tif", 1024);
    const std::vector<std::string> tooMany(5, a);
    std::string missing;
    for (int i = 0; i < 131072; ++i) {
        missing += "m" + std::to_string(i) + ".tif\n";
    }
    fakes::writeFile(directory_ / "missing", missing);
    fakes::writeFile(directory_ / "more", missing + "more.tif\n");
    fakes::writeFile(directory_ / "set.xml", runTool({"list", half, other}).out);
    std::string documents;
    std::string patterns;
    for (int i = 0; i < 1001; ++i) {
        documents += directory_ / "set.xml\n";
        patterns += directory_ / ("*." + std::to_string(i) + "\n");
    }
    fakes::writeFile(directory_ / "documents", documents);
    fakes::writeFile(directory_ / "patterns", patterns);
    std::string up = directory_.path();
    for (int i = 0; i < 20; ++i) {
        std::filesystem::create_directory(directory_ / ("folder" + std::to_string(i)));
        up += "/*/..";
    }
    const Strings described = {write("d1.tif"), write("d2.tif")};
    std::string domains;
    for (int i = 0; i < 20000; ++i) {
        domains += "<Metadata domain='" + std::to_string(i) + "'><MDI key='k'>v</MDI></Metadata>";
    }
    for (const std::string& path : described) {
        fakes::writeFile(path + ".aux.xml", "<PAMDataset>" + domains + "</PAMDataset>");
    }
    struct Case {
        Strings arguments;
        int code;
        const char* message;
    };
    const Case cases[] = {
        {{"info", a, b}, 0, ""},
        {{"quicklook", a, b, "-o", directory_ / "a.png"}, 0, ""},
        {{"vrt", half, other, "-o", directory_ / "both.vrt"}, 0, ""},
        {{"export", half, other, "-o", directory_ / "both.tif"}, 0, ""},
        {joined({"info"}, tooMany), 2, "with this file the set has more than 16384 bands"},
        {{"check", "@" + (directory_ / "missing")}, 3, "m0.tif: No such file"},
        {{"check", "@" + (directory_ / "more")}, 2, "more.tif: with this the set has more than"},
        {{"list", "@" + (directory_ / "documents")}, 2, "with this the set has more than 131072"},
        {{"check", "@" + (directory_ / "patterns")}, 2, "more than 1000 folders, patterns and"},
        {joined({"export", "--cog", "-o", directory_ / "d.tif"}, described), 0, ""},
        {{"info", up + "/*.tif"}, 3, "No such file"},
        {{"vrt", a, b, "-o", directory_ / "a.vrt"}, 2, "8192 bands are too many for one output"},
        {{"export", a, b, "-o", directory_ / "o.tif"}, 2, "8192 bands are too many"},
    };
    for (const Case& c : cases) {
        const double before = secondsOf(usedByChildren());
        const Outcome outcome = runKestms(c.arguments);
        const rusage used = usedByChildren();
        const std::string what = testing::PrintToString(c.arguments);
        EXPECT_EQ(outcome.code, c.code) << what << outcome.err.substr(0, 1000);
        EXPECT_THAT(outcome.err.substr(0, 1000), HasSubstr(c.message)) << what;
        EXPECT_LT(secondsOf(used) - before, kMostSeconds) << what;
        EXPECT_LT(used.ru_maxrss / 1024, kMostMegabytes) << what;
    }
}

}  // namespace
}  // namespace kestms
