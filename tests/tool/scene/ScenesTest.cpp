#include "tool/scene/Scenes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/fakes/Network.h"
#include "tests/fakes/Products.h"
#include "tests/tool/Process.h"
#include "tests/tool/RunTool.h"
#include "tool/scene/BandLabels.h"

namespace kestms {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string kFirst = "LC08_L2SP_195026_20200908_20200919_02_T1";
const std::string kSecond = "LC08_L2SP_195026_20200924_20201001_02_T1";

class Scenes : public InDirectory {
  protected:
    /// A folder with three bands, two quality layers of which one has another pixel layout, the
    /// metadata and a picture.
    std::string writeLandsat8(const std::string& folder, const std::string& scene) const {
        for (const char* band : {"SR_B4", "SR_B2", "ST_B10", "QA_PIXEL"}) {
            write(folder + "/" + scene + "_" + band + ".TIF", {.type = GDT_UInt16});
        }
        write(folder + "/" + scene + "_SR_QA_AEROSOL.TIF");
        fakes::writeFile(directory_ / (folder + "/" + scene + "_MTL.xml"), "<product/>");
        return directory_ / folder;
    }

    static Strings bandNames(const Outcome& outcome) {
        return valuesOf(outcome.json()["bands"], "name");
    }
    static nlohmann::json bandsOf(const Strings& arguments) {
        return runTool(joined({"info", "--json"}, arguments)).json()["bands"];
    }
    static nlohmann::json scenesOf(const Strings& arguments) {
        return runTool(joined({"scenes", "--json"}, arguments)).json()["scenes"];
    }
};

TEST_F(Scenes, AFolderWithOneSceneIsASet) {
    const std::string folder = writeLandsat8("scene", kFirst);
    write("scene/dem.tif", {.type = GDT_UInt16});
    const Outcome outcome = runTool({"info", folder, "--json"});
    EXPECT_EQ(outcome.err, "kestms: " + folder +
                               ": set aside: 2 quality, 1 part of no scene (--with-quality takes "
                               "what fits)\n");
    EXPECT_EQ(outcome.json()["referenceName"], kFirst);
    EXPECT_THAT(bandNames(outcome),
                ElementsAre(HasSubstr("Blue"), HasSubstr("Red"), HasSubstr("Thermal")));
    const Outcome glob = runTool({"info", folder + "/*_B*.TIF", "--json"});
    EXPECT_EQ(glob.err, "");
    EXPECT_EQ(glob.json()["bands"], outcome.json()["bands"]);
    const Outcome more = runTool({"info", folder, "--json", "--with-quality"});
    EXPECT_EQ(more.json()["bands"].size(), 4U);
    EXPECT_THAT(more.err, HasSubstr("AEROSOL.TIF: left out: the pixel layout is 8-bit"));
}

TEST_F(Scenes, OneOfSeveralIsChosen) {
    const std::string folder = writeLandsat8("all/a", kFirst);
    writeLandsat8("all/b", kSecond);
    const std::string all = directory_ / "all";
    const Outcome refused = runTool({"info", all});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err, "kestms: " + all + ": holds 2 scenes; choose one with --scene NAME: " +
                               kFirst + ", " + kSecond + "\n");
    for (const std::string& scene : {kSecond, kSecond.substr(0, 25) + "*", std::string("B")}) {
        EXPECT_EQ(runTool({"info", all, "--scene", scene, "--json"}).json()["referenceName"],
                  kSecond);
    }
    // Products of one day have one scene name.
    for (const char* band : {"2", "4"}) {
        const std::string tile = "all/t/T32TQM_20180629T101031_B0" + std::string(band);
        write(tile + ".tif", {.type = GDT_UInt16});
        write(tile + "_10m.tif", {.type = GDT_UInt16});
    }
    EXPECT_EQ(bandsOf({all, "--scene", "*level 2A"}).size(), 2U);
    const std::string dem = write("dem.tif", {.type = GDT_UInt16});
    fakes::writeFile(folder + "/" + kFirst + "_SR_B2.TFW", "30\n0\n0\n-30\n0\n0\n");
    const std::pair<Strings, std::string> said[] = {
        {{all, "--scene", "T32*"},
         "names several scenes; --scene takes the name of a product or a folder"},
        {{all, "--scene", "x"}, "x: no such scene; there are " + kFirst},
        {{all + "/a", all + "/b"}, "files of 2 scenes are given: " + kFirst + ", " + kSecond},
        {{folder, dem}, "dem.tif: is part of no scene, but " + kFirst + " is one"},
        {{folder + "/*_SR_B*"}, "set aside: 1 world file"},
    };
    for (const auto& [arguments, message] : said) {
        EXPECT_THAT(runTool(joined({"info"}, arguments)).err, HasSubstr(message));
    }
    const Strings files = {
        folder + "/" + kFirst + "_SR_B2.TIF", folder + "/" + kFirst + "_SR_B4.TIF",
        all + "/b/" + kSecond + "_SR_B2.TIF", all + "/b/" + kSecond + "_QA_PIXEL.TIF"};
    const Outcome mixed = runTool(joined({"info", "--json"}, files));
    EXPECT_EQ(mixed.json()["bands"].size(), 3U);
    EXPECT_THAT(mixed.err, HasSubstr("kestms: files of 2 scenes are given: " + kFirst));
    EXPECT_THAT(mixed.err, HasSubstr(kSecond + ": set aside: 1 quality"));
    EXPECT_EQ(bandsOf(joined({"--scene", kFirst}, files)).size(), 2U);
}

TEST_F(Scenes, FramesAndMetadataThatAreNamedAreSortedToo) {
    const std::string prefix = writeLandsat8("scene", kFirst) + "/" + kFirst;
    fakes::writeFile(prefix + "_MTL.txt", "END");
    fakes::writeFile(directory_ / "MTD_MSIL2A.xml", "<product/>");
    const Strings files = {prefix + "_QA_PIXEL.TIF#0", prefix + "_SR_B4.TIF#0",
                           prefix + "_SR_B2.TIF#0"};
    EXPECT_THAT(runTool(joined({"info"}, files)).err, HasSubstr(": set aside: 1 quality ("));
    for (const Strings& arguments : {joined({"--with-quality"}, files),
                                     {files[1], files[1], files[2]},
                                     {prefix + "_MTL.txt"},
                                     {prefix + "_MTL.xml"}}) {
        EXPECT_EQ(bandsOf(arguments).size(), 3U) << arguments[0];
    }
    fakes::writeFile(directory_ / "scene/notes.txt", "mine");
    for (const char* command : {"info", "scenes"}) {
        EXPECT_EQ(runTool({command, directory_ / "scene/notes.txt"}).code, 3);
    }
    fakes::writeFile(prefix + "_thumb_small.jpeg", "");
    fakes::writeFile(prefix + ".jpg", "");
    const Strings all = {
        prefix + "_SR_B2.TIF", prefix + "_SR_B4.TIF",         prefix + "_MTL.txt",
        prefix + "_MTL.xml",   directory_ / "MTD_MSIL2A.xml", prefix + "_thumb_small.jpeg",
        prefix + ".jpg"};
    EXPECT_THAT(runTool(joined({"info"}, all)).err,
                testing::EndsWith(kFirst + ": set aside: 3 metadata, 2 preview\n"));
    EXPECT_THAT(runTool({"info", directory_ / "scene", prefix + "_MTL.txt"}).err,
                testing::Not(HasSubstr("2 scenes")));
    const Strings twice = joined(files, {files[1], prefix + "_SR_B2.TIF"});
    EXPECT_EQ(scenesOf(twice)[0]["files"].size(), 2U);
    const auto scenes = scenesOf(all);
    ASSERT_EQ(scenes.size(), 1U);
    EXPECT_EQ(scenes[0]["setAside"].size(), 5U);
    // Files of a scene that have no folder in common.
    EXPECT_EQ(runTool({"check", "/" + kFirst + "_SR_B2.TIF", kFirst + "_SR_B3.TIF"}).code, 3);
    const auto described = scenesOf({prefix + "_MTL.txt", prefix + "_MTL.xml"});
    ASSERT_EQ(described.size(), 1U);
    EXPECT_EQ(described[0]["bands"].size(), 3U);
    // A file that was not downloaded whole costs no other band.
    std::filesystem::resize_file(prefix + "_SR_B2.TIF", 100);
    EXPECT_EQ(scenesOf({prefix + "_MTL.txt"})[0]["bands"].size(), 2U);
}

TEST_F(Scenes, WhatElseIsInAFolderIsMentioned) {
    writeLandsat8("all/scene", kFirst);
    write("all/other/dem.tif");
    fakes::writeFile(directory_ / "all/other/a.ZIP", "PK");
    fakes::writeFile(directory_ / "all/other/b.TIF.gz", "\x1F\x8B");
    const std::string all = directory_ / "all";
    const std::string archives = all +
                                 ": not looked into: 1 archive (name one to look into it), 1 file "
                                 "compressed with gzip (unpack to read)\n";
    EXPECT_EQ(runTool({"info", all}).err, "kestms: " + archives + "kestms: " + all +
                                              ": set aside: 2 quality, 1 part of no scene "
                                              "(--with-quality takes what fits)\n");
    EXPECT_THAT(runTool({"scenes", all}).err, HasSubstr(archives));
    std::filesystem::remove(directory_ / "all/other/dem.tif");
    std::filesystem::create_directory_symlink(directory_ / "all", all + "/other/link");
    EXPECT_THAT(runTool({"info", all + "/other"}).err,
                HasSubstr("holds no raster files, but 1 archive and 1 linked folder ("));
}

/// Two editions of a Sentinel-2 product, two folders with one Landsat scene, and a folder with two
/// whose layers are named like those of another product.
TEST_F(Scenes, CopiesOfASceneAreToldApart) {
    const std::string tile = "T32TQM_20200101T100319_";
    for (const std::string edition : {"N0208", "N0500"}) {
        const std::string safe = "two/S2A_MSIL2A_20200101T100319_" + edition + "_T32TQM.SAFE/";
        for (const std::string& file :
             {"IMG_DATA/R10m/" + tile + "B02_10m", "IMG_DATA/R10m/" + tile + "B04_10m",
              "QI_DATA/" + tile + "PVI"}) {
            write(safe + file + ".tif", {.type = GDT_UInt16});
        }
    }
    writeLandsat8("two/x", kFirst);
    writeLandsat8("two/y", kFirst);
    for (const char* row : {"026", "027"}) {
        for (const char* name : {"toa_band2", "toa_band4", "pixel_qa"}) {
            write("two/z/LC08_L1TP_193" + std::string(row) + "_20160712_20170720_01_T1_" + name +
                  ".tif");
        }
    }
    const auto scenes = scenesOf({directory_ / "two"});
    ASSERT_EQ(scenes.size(), 6U);
    for (const nlohmann::json& scene : scenes) {
        EXPECT_EQ(scene["files"].size(), scene["name"] == kFirst ? 3U : 2U);
        EXPECT_EQ(scene["setAside"].size(), scene["name"] == kFirst ? 2U : 1U);
    }
    EXPECT_EQ(scenes[0]["setAside"][0]["reason"], "preview");
    EXPECT_THAT(runTool({"info", directory_ / "two"}).err, HasSubstr("N0500_T32TQM.SAFE)"));
    EXPECT_THAT(runTool({"scenes", directory_ / "two"}).out, HasSubstr("N0500_T32TQM.SAFE)"));
    const auto bands = bandsOf({directory_ / "two", "--scene", "*N0500*"});
    EXPECT_THAT(bands[1]["file"].get<std::string>(), HasSubstr("N0500"));
    EXPECT_EQ(runTool({"info", directory_ / "two", "--scene", "y"}).code, 0);
}

TEST_F(Scenes, PicturesAreRastersWhereThereIsNothingElse) {
    for (const std::string name : {"p/a_01", "p/a_02"}) {
        write(name + ".png", {.transform = {}, .driver = "PNG"});
        fakes::writeFile(directory_ / name + ".pgw", "30\n0\n0\n-30\n1015\n1985\n");
    }
    write("p/preview.png", {.transform = {}, .driver = "PNG"});
    std::filesystem::remove(directory_ / "p/preview.png.aux.xml");
    EXPECT_EQ(bandsOf({directory_ / "p"}).size(), 2U);
    const Strings rasters = {write("p/b_1.tif"), write("p/b_2.tif")};
    EXPECT_EQ(bandsOf({directory_ / "p"}), bandsOf(rasters));
}

TEST_F(Scenes, OfABandAtSeveralPixelSizesTheOwnIsTaken) {
    const std::string tile = "T32TQM_20180629T012042_";
    const std::string data = "renamed/GRANULE/L2A/IMG_DATA/";
    for (const std::string name : {"B02_20m", "B02_10m", "B8A_20m", "B8A_60m", "TCI_10m", "AOT_20m",
                                   "AOT_10m", "SCL_60m", "SCL_20m"}) {
        write(data + "R" + name.substr(4) + "/" + tile + name + ".tif", {.type = GDT_UInt16});
    }
    write("renamed/GRANULE/L2A/QI_DATA/MSK_B02.tif");
    write("renamed/GRANULE/L2A/QI_DATA/" + tile + "PVI.tif");
    const auto scenes = scenesOf({directory_.path()});
    ASSERT_EQ(scenes.size(), 1U);
    EXPECT_EQ(scenes[0]["product"], "sentinel-2-l2a");
    EXPECT_EQ(scenes[0]["date"], "2018-06-29");
    EXPECT_EQ(scenes[0]["decodable"], true);
    EXPECT_THAT(scenes[0]["files"],
                ElementsAre(directory_ / (data + "R10m/" + tile + "B02_10m.tif"),
                            directory_ / (data + "R20m/" + tile + "B8A_20m.tif")));
    EXPECT_EQ(summaryOf({{"a", "mask", true}, {"b", "quality", true}, {"c", "mask", true}}),
              "2 mask, 1 quality");
    EXPECT_THAT(valuesOf(scenes[0]["setAside"], "reason"),
                testing::UnorderedElementsAre(
                    "same band at another pixel size", "same band at another pixel size", "preview",
                    "ancillary", "mask", "same layer at another pixel size",
                    "same layer at another pixel size", "mask", "preview"));
    const auto before = std::filesystem::current_path();
    for (const char* file : {"renamed/MTD_MSIL2A.xml", "renamed/DATASTRIP/DS/MTD_DS.xml"}) {
        const std::filesystem::path metadata = directory_ / file;
        fakes::writeFile(metadata, "<product/>");
        EXPECT_EQ(bandsOf({metadata}).size(), 2U) << file;
        std::filesystem::current_path(metadata.parent_path());
        EXPECT_EQ(scenesOf({metadata.filename()})[0]["files"], scenes[0]["files"]) << file;
    }
    std::filesystem::current_path(before);
    const Outcome layers = runTool({"info", directory_.path(), "--with-quality", "--json"});
    EXPECT_THAT(bandNames(layers),
                ElementsAre("Blue (B02)", HasSubstr("B8A"), "Aerosol optical thickness",
                            "Scene classification"));
    EXPECT_THAT(layers.json()["bands"][3]["file"].get<std::string>(), HasSubstr("SCL_20m"));
}

TEST_F(Scenes, ListWhatIsThereAndWhyItIsNoSet) {
    writeLandsat8("a", kFirst);
    write("loose/nir.tif");
    write("loose/red.tif");
    write("one/single.tif");
    const Outcome outcome = runTool({"scenes", directory_.path()});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out,
                HasSubstr(kFirst + "  Landsat 8-9 OLI/TIRS, Collection 2 level 2  2020-09-08"));
    EXPECT_THAT(outcome.out, HasSubstr("  2 quality  yes\n"));
    EXPECT_THAT(outcome.out, HasSubstr("a set needs at least two bands\n"));
    EXPECT_EQ(bandsOf({directory_ / "loose"}).size(), 2U);
    EXPECT_EQ(runTool({"scenes", directory_ / "none"}).code, 3);
}

TEST_F(Scenes, AnArchiveIsAPlaceToLook) {
    const std::string folder = writeLandsat8("scene", kFirst);
    const nlohmann::json bands = bandsOf({folder});
    const std::string tar = directory_ / "LC08.tar";
    const std::string zipped = directory_ / "a {b}.TGZ";
    runProgram({"tar", "-cf", tar, "-C", directory_.path(), "scene"});
    runProgram({"tar", "-czf", zipped, "-C", folder, "."});
    for (const std::string& path : {tar, zipped, "/vsitar/" + tar + "/scene"}) {
        SCOPED_TRACE(path);
        const Outcome outcome = runTool({"info", path, "--json"});
        EXPECT_THAT(outcome.err, HasSubstr("set aside: 2 quality"));
        EXPECT_EQ(outcome.json()["referenceName"], kFirst);
        EXPECT_EQ(outcome.json()["bands"].size(), bands.size());
        EXPECT_EQ(scenesOf({path})[0]["decodable"], true);
    }
    EXPECT_THAT(runTool({"info", tar, directory_ / "./LC08.tar"}).err, HasSubstr("given 2 times"));
    const std::string document = directory_ / "set.xml";
    EXPECT_EQ(runTool({"list", tar, "-o", document}).code, 0);
    EXPECT_EQ(bandsOf({document}).size(), bands.size());
    const std::string vrt = directory_ / "set.vrt";
    EXPECT_EQ(runTool({"vrt", tar, "-o", vrt}).code, 0);
    EXPECT_EQ(gdalPixels(vrt, 1), gdalPixels(folder + "/" + kFirst + "_SR_B2.TIF", 1));
    EXPECT_THAT(runTool({"export", tar, "-o", tar, "--overwrite"}).err,
                HasSubstr("the output would overwrite an input"));
    fakes::writeFile(directory_ / "damaged.zip", "PK");
    const Outcome damaged = runTool({"info", directory_ / "damaged.zip"});
    EXPECT_EQ(damaged.code, 3);
    EXPECT_THAT(damaged.err, HasSubstr("damaged.zip: a damaged or empty archive"));
    const Outcome others = runTool({"scenes", directory_ / "damaged.zip", tar});
    EXPECT_EQ(others.err, damaged.err);
    EXPECT_EQ(others.code, 3);
    EXPECT_THAT(others.out, HasSubstr(kFirst));
}

/// A document is untrusted: it must not make the program connect.
TEST_F(Scenes, OnlyTheUserNamesFilesOnTheNetwork) {
    const fakes::Listener listener;
    const std::string name = listener.url() + ".tif";
    const std::string document = directory_ / "set.xml";
    fakes::writeFile(document, "<storage><image><component><data><file path=\"" + name +
                                   "\"/></data></component><component><data><file path=\"" +
                                   write("a.tif") + "\"/></data></component></image></storage>");
    fakes::writeFile(directory_ / "list.txt", name + "\n");
    for (const std::string& argument :
         {document, "@" + (directory_ / "list.txt"), directory_.path()}) {
        for (const char* command : {"info", "check", "list"}) {
            runTool({command, argument});
        }
        EXPECT_FALSE(listener.isCalled()) << argument;
    }
    EXPECT_THAT(runTool({"check", document}).out,
                HasSubstr("not named by the user (--allow-remote reads it)"));
    const fakes::WebServer server(directory_.path());
    const std::string remote = server.url() + "a.tif";
    EXPECT_EQ(bandsOf({remote, remote}).size(), 2U);
    fakes::writeFile(directory_ / "list.txt", remote + "\n" + (directory_ / "a.tif"));
    const std::string list = "@" + (directory_ / "list.txt");
    EXPECT_EQ(runTool({"info", list}).code, 3);
    EXPECT_EQ(bandsOf({list, "--allow-remote"}).size(), 2U);
}

/// Of every product, whatever its folders look like.
TEST_F(Scenes, AFolderOfEveryProductIsOneImage) {
    const std::string tif = fakes::readFile(write("source.tif", {.type = GDT_UInt16}));
    std::filesystem::remove(directory_ / "source.tif");
    for (const fakes::ProductCase& c : fakes::kProductCases) {
        SCOPED_TRACE(c.product);
        const std::string folder = directory_ / (c.product + " " + c.scene);
        const auto product = runTool({"products", c.product, "--json"}).json()["products"][0];
        for (const std::string& file : c.fileNames()) {
            const std::filesystem::path path = folder + "/" + file;
            fakes::writeFile(path, tif);
            for (const std::string witness : product["witnesses"]) {
                // That of a folder of one pixel size lies above it.
                const auto place = path.parent_path();
                const bool isOfSize = place.filename().string().starts_with('R');
                fakes::writeFile((isOfSize ? place.parent_path() : place) / witness, "<w/>");
            }
        }
        Strings commonNames;
        Strings roles;
        std::istringstream bands(c.bands);
        for (std::string band; std::getline(bands >> std::ws, band, ',');) {
            std::istringstream words(band);
            std::string code, word, bucket;
            words >> code >> word >> bucket;
            if (word != "metadata") {
                (bucket.empty() ? roles : commonNames).push_back(word);
            }
        }
        const auto scenes = scenesOf({folder});
        ASSERT_EQ(scenes.size(), 1U);
        EXPECT_EQ(scenes[0]["product"], c.product);
        EXPECT_EQ(scenes[0]["name"], c.scene);
        EXPECT_EQ(scenes[0]["files"].size(), commonNames.size());
        EXPECT_EQ(valuesOf(scenes[0]["setAside"], "reason"), roles);
        if (commonNames.size() > 1) {
            const Outcome image = runTool({"info", folder, "--json"});
            ASSERT_EQ(image.code, 0) << image.err;
            EXPECT_EQ(image.json()["referenceName"], c.scene);
            EXPECT_EQ(valuesOf(image.json()["bands"], "commonName"), commonNames);
        }
    }
}

TEST_F(Scenes, VirtualRastersAreReadOnRequest) {
    const std::string component = write("in/a.tif");
    const std::string virtualOne = directory_ / "v.vrt";
    runProgram({"gdalbuildvrt", "-q", virtualOne, component});
    const Strings files = {virtualOne, component};
    const std::string reason = virtualOne +
                               ": a virtual raster, which may open any other file "
                               "(--allow-vrt reads it)\n";
    EXPECT_THAT(runTool({"info", virtualOne}).err, HasSubstr(reason));

    for (const char* command : {"export", "vrt"}) {
        const std::string to = directory_ / (command == std::string("vrt") ? "o.vrt" : "o.tif");
        const Outcome outcome = runKestms(joined({"--allow-vrt", command, "-o", to}, files));
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(gdalPixels(to, 1), gdalPixels(component, 1)) << command;
    }
    const std::string outer = directory_ / "outer.vrt";
    runProgram({"gdalbuildvrt", "-q", outer, virtualOne});
    for (const std::string& named : {virtualOne, outer}) {
        EXPECT_THAT(
            runTool({"--allow-vrt", "export", named, named, "-o", component, "--overwrite"}).err,
            HasSubstr("the output would overwrite an input"));
    }
    std::filesystem::remove(component);
    EXPECT_THAT(runTool({"--allow-vrt", "check", virtualOne, virtualOne}).out,
                HasSubstr("what it names cannot be read"));
}

TEST_F(Scenes, MisfitsAreSkippedOnRequest) {
    const Strings files = {write("a.tif"), write("b.tif"), write("c.tif", {.type = GDT_UInt16})};
    const Outcome refused = runTool(joined({"info", "--json"}, files));
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.err, HasSubstr("(--skip-misfits leaves out what differs)\n"));
    const Outcome outcome = runTool(joined({"info", "--json", "--skip-misfits"}, files));
    EXPECT_EQ(outcome.err,
              "kestms: " + files[2] +
                  ": left out: the pixel layout is 16-bit single channel, the set's is "
                  "8-bit single channel\n");
    EXPECT_THAT(bandNames(outcome), ElementsAre("a", "b"));
    EXPECT_EQ(runTool(joined({"check"}, files)).code, 1);
    const Outcome checked = runTool(joined({"check", "--skip-misfits"}, files));
    EXPECT_EQ(checked.err, outcome.err);
    EXPECT_THAT(checked.out, HasSubstr("Decodable: 2 of 2 components"));
}

TEST(BandLabels, AreThePartOfAFileNameThatDiffers) {
    const std::pair<Strings, Strings> cases[] = {
        {{"d/LC8_LGN00_B10.TIF", "d/LC8_LGN00_B1.TIF"}, {"B10", "B1"}},
        {{"a_red_x.tif", "a_nir_x.tif", "a_red2_x.tif"}, {"red", "nir", "red2"}},
        {{"red.tif", "nir.tif"}, {"red", "nir"}},
        {{"a.tif", "a_b.tif"}, {"a", "a_b"}},
        {{"s.tif", "s.tif"}, {"", ""}},
        {{}, {}},
    };
    for (const auto& [paths, labels] : cases) {
        EXPECT_EQ(distinguishingParts(paths), labels);
    }
}

}  // namespace
}  // namespace kestms
