#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "tests/tool/Process.h"
#include "tests/tool/RunTool.h"

namespace kestms {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kScene = "LC08_L2SP_195025_20180707_20200831_02_T1";

class Products : public InDirectory {
  protected:
    /// A user's catalogue that also matches the files of a scene of the shipped one.
    std::string writeCatalogue(const std::string& product) const {
        const std::string path = directory_ / "mine.xml";
        std::ofstream(path) << "<catalogue version='1'><product id='" + product +
                                   "'><name>My camera</name><file>[" + kScene +
                                   "]_SR_{band}</file><bucket id='b' number='0'/>"
                                   "<band code='B4' type='red'/><band code='B2' type='blue'/>"
                                   "</product></catalogue>";
        return path;
    }
    Strings writeScene() const {
        Strings files;
        for (const char* band : {"_SR_B4.TIF", "_SR_B2.TIF"}) {
            files.push_back(write(kScene + band));
        }
        return files;
    }
    static json infoOf(const Strings& files, const Strings& options = {}) {
        return runTool(joined(joined(options, {"info", "--json"}), files)).json();
    }
};

TEST_F(Products, NameTheBandsOfASceneUnlessToldOtherwise) {
    const Strings files = writeScene();
    const json shipped = infoOf(files);
    EXPECT_EQ(shipped["namingScheme"], json({{"number", 9}, {"name", "catalogue"}}));
    EXPECT_EQ(shipped["referenceName"], kScene);
    EXPECT_EQ(shipped["bands"][0]["name"], "Blue (B2)");
    EXPECT_EQ(shipped["bands"][0]["commonName"], "blue");
    EXPECT_EQ(shipped["bands"][1]["displayChannel"], "red");
    EXPECT_EQ(shipped["bands"][1]["noData"], 0) << "the product's, as the files have none";
    const json unknown = infoOf(files, {"--no-products"});
    EXPECT_EQ(unknown["namingScheme"]["name"], "generic");
    EXPECT_EQ(unknown["bands"][1]["noData"], nullptr);
    const std::string mine = writeCatalogue("mine");
    EXPECT_EQ(infoOf(files, {"--products", mine})["bands"][0]["name"], "B4");
    EXPECT_EQ(infoOf(files, {"--no-products", "--products", mine})["bands"][0]["name"], "B4");
    EXPECT_THAT(runTool(joined({"info", "--explain"}, files)).out,
                HasSubstr("Naming scheme 9 (catalogue): every file belongs to one scene of "
                          "Landsat 8-9 OLI/TIRS, Collection 2 level 2"));
}

TEST_F(Products, AreListedDescribedAndChecked) {
    EXPECT_THAT(runTool({"products"}).out, HasSubstr("\nsentinel-2-l2a "));
    const std::string one = runTool({"products", "sentinel-2-l1c-bucket"}).out;
    for (const char* part :
         {"Witness:      tileInfo.json", "B8A", "Red edge (B05)", "0.8647", "TCI", "preview"}) {
        EXPECT_THAT(one, HasSubstr(part));
    }
    EXPECT_EQ(runTool({"products", "none"}).code, 2);
    EXPECT_EQ(runTool({"products", "none", "--json"}).code, 2);
    const json document =
        runTool({"--no-products", "--products", writeCatalogue("mine"), "products", "--json"})
            .json();
    EXPECT_EQ(document["schema"]["name"], "kestms products");
    const json& all = document["products"];
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0]["bands"][0]["code"], "B4");

    EXPECT_THAT(runTool({"products", "--check", writeCatalogue("mine")}).out, HasSubstr("mine"));
    const std::string mine = writeCatalogue("");
    const Outcome checked = runTool({"products", "--check", mine});
    EXPECT_EQ(checked.code, 3);
    EXPECT_EQ(checked.err, "kestms: " + mine + ": <product> lacks \"id\"\n");
    EXPECT_EQ(runTool({"--products", mine, "products"}).code, 3);
    EXPECT_EQ(runTool({"--products", directory_ / "none.xml", "products"}).code, 3);
    writeCatalogue("hls-l30");
    EXPECT_EQ(runTool({"--products", mine, "products"}).err,
              "kestms: " + mine +
                  ": product \"hls-l30\" is there for the second time with the shipped catalogue "
                  "(--no-products leaves that out)\n");
}

TEST_F(Products, WithoutMemoryForThemThereIsAWord) {
    for (int kilobytes = 12'000; kilobytes < 24'000; kilobytes += 500) {
        const Outcome outcome = Process({"sh", "-c",
                                         "ulimit -v " + std::to_string(kilobytes) + "; exec " +
                                             fakes::kTool + " products"})
                                    .wait();
        EXPECT_THAT(outcome.err,
                    testing::Not(testing::AnyOf("kestms: \n", HasSubstr("terminate"))));
        EXPECT_NE(outcome.code, 3);
    }
}

}  // namespace
}  // namespace kestms
