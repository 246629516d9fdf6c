#include "bands/catalogue/ProductCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "codec/KestMultispectralCodec.h"
#include "reader/KestMultispectralReadFile.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"
#include "tests/fakes/Sets.h"

namespace {

using testing::HasSubstr;

const std::string kDocument = R"(<?xml version="1.0"?>
<catalogue version="1">
  <term id="red"><name>Red</name><name language="de">Rot</name></term>
  <bands id="sensor">
    <bucket id="fine" number="5" term="red"/>
    <bucket id="coarse" number="3"><name>Coarse</name></bucket>
    <band code="B2|BAND2" type="near-infrared" bucket="coarse" order="7"><name>Second</name></band>
    <band code="B1" term="red" type="red" channel="red" centre="0.66" width="0.06"/>
    <layer code="qa" role="quality"/>
  </bands>
  <product id="one" bands="sensor">
    <name>Product one</name>
    <file>[one_{date}]_{band}</file>
    <file bucket="coarse">[one_{date}]_{band}_60m</file>
  </product>
  <product id="two" bands="sensor">
    <name>Product two</name>
    <file>r10m/{band}</file>
    <file>{band}</file>
    <witness>meta.xml</witness>
  </product>
  <product id="three" bands="sensor">
    <name>Product three</name>
    <file>[s##]_{band}</file>
    <file>[s##/@]/x{band}</file>
    <witness>meta.xml</witness>
  </product>
</catalogue>
)";

std::string catalogueOf(const std::string& content) {
    return "<catalogue version=\"1\">" + content + "</catalogue>";
}

/// ASCII with a byte-order mark in front.
std::string utf16(std::string_view text) {
    std::string wide = "\xFF\xFE";
    for (const char c : text) {
        wide += {c, '\0'};
    }
    return wide;
}

class CatalogueTest : public testing::Test {
  protected:
    ~CatalogueTest() override { codec_.setProductCatalogue({}); }

    std::string use(const std::string& document) {
        const fakes::TempFile file("catalogue", document);
        Pyxis::StringBuffer reason;
        const bool used = codec_.setProductCatalogue(Pyxis::fileSpecifier(file.path()), &reason);
        EXPECT_EQ(used, reason.isZero());
        return Pyxis::toUtf8(reason);
    }

    /// "scheme reference: name type channel number bucket common role, ..." of the bands.
    std::string open(const std::vector<std::string>& paths, bool withFinder = true) {
        for (const std::string& path : paths) {
            tiff_.add(path, fakes::bandFrame(path.find("60m") == path.npos ? 10.0 : 60.0));
        }
        const Pyxis::FileSpecifier set = fakes::setOf(paths);
        const std::unique_ptr<Pyxis::ReadImageFileInterface> image(
            withFinder ? codec_.openImage(&set, finder_) : codec_.openImage(&set));
        const auto& reader = dynamic_cast<const KestMultispectralReadFile&>(*image);
        Pyxis::StringBuffer text;
        reader.getReferenceName(text);
        std::string answer =
            std::to_string(codec_.getNamingScheme(*image)) + " " + Pyxis::toUtf8(text) + ":";
        for (int i = 0; i < reader.getNumFrames(); ++i) {
            const kest::BandRecord& band = reader.band(i);
            const kest::BucketRecord& bucket = reader.bucket(band.bucketIndex);
            KestMultispectralCodec::BandDetails details;
            EXPECT_TRUE(codec_.getBandDetails(*image, i, details));
            answer += " " + Pyxis::toUtf8(band.bandName) + "|" +
                      std::to_string(static_cast<int>(band.bandType)) +
                      std::to_string(static_cast<int>(band.bandAssignment)) + "|" +
                      std::to_string(details.number) + "|" + Pyxis::toUtf8(bucket.bucketName) +
                      " " + std::to_string(details.bucketNumber) + "|" + details.commonName + "|" +
                      std::to_string(static_cast<int>(details.role));
        }
        return answer;
    }

    fakes::World world_;
    fakes::TiffCodec tiff_{world_};
    fakes::Finder finder_{world_, "/meta.xml"};
    KestMultispectralCodec codec_;
};

}  // namespace

TEST_F(CatalogueTest, NamesTheBandsOfASceneOfAProduct) {
    const std::vector<std::string> paths{"/a/one_20200101_QA.tif", "/a/ONE_20200101_band2.tif",
                                         "/a/one_20200101_b1.tif"};
    const std::string without = open(paths);
    EXPECT_EQ(without.substr(0, 3), "1 o");
    EXPECT_EQ(use(kDocument), "");
    EXPECT_EQ(open(paths),
              "9 one_20200101: Red (B1)|41|1|Red 5|red|0 Second|50|7|Red 5|nir|0 "
              "qa|00|1002|Red 5||1");
    {
        const fakes::TextsFrom german(fakes::stringModule("de"));
        EXPECT_THAT(open({paths[2], "/a/one_20200101_qa_60m.tif"}),
                    testing::AllOf(HasSubstr("Rot (B1)"), HasSubstr("|Coarse 3|")));
    }
    // The catalogue does not change files of two scenes, nor a file of no product.
    EXPECT_EQ(open({paths[1], "/a/one_20200102_b1.tif"}).substr(0, 1), "1");
    EXPECT_EQ(open({"/vsigzip//a/one_20200101_b1.tif.gz", paths[1]}).substr(0, 1), "9");
    EXPECT_EQ(open({"/a/one_20200101_b1.tif.gz", paths[1]}).substr(0, 1), "1");
    EXPECT_EQ(open({paths[1], "/a/one_20200101_b9.tif"}).substr(0, 1), "1");
    EXPECT_EQ(open({"/po_1_red_0.tif", "/po_1_grn_0.tif"}).substr(0, 1), "3");
    codec_.setProductCatalogue({});
    EXPECT_EQ(open(paths), without);
}

TEST_F(CatalogueTest, AsksForAWitnessThroughTheFinder) {
    ASSERT_EQ(use(kDocument), "");
    const std::vector<std::string> paths{"/x/Scene/R10m/B2.jp2", "/x/Scene/R10m/B1.jp2"};
    world_.events.clear();
    EXPECT_EQ(open(paths).substr(0, 8), "9 Scene:");
    EXPECT_THAT(world_.events, testing::Contains("find meta.xml by /x/Scene/R10m").Times(1));
    EXPECT_EQ(open(paths, false).substr(0, 1), "1");
    EXPECT_EQ(open({"B2.jp2", "B1.jp2"}).substr(0, 6), "9 two:");
    EXPECT_EQ(open({"/x/s01/a/xB2.tif", "/x/s01/a/xB1.tif"}).substr(0, 8), "9 s01_a:");
    EXPECT_THAT(world_.events, testing::Contains("find meta.xml by /x/s01/a/xB2.tif"));
    EXPECT_EQ(open({"/x/s01/a/xB2.tif", "/y/s01/a/xB1.tif"}).substr(0, 1), "1");  // copies
    // Each folder needs its own.
    const std::vector<std::string> apart{"/x/s01_B1.tif", "/x/s01_QA.tif", "/y/s01_B2.tif"};
    EXPECT_EQ(open(apart).substr(0, 6), "9 s01:");
    int asked = 0;
    world_.fail = [&asked](std::string_view call) {
        return call == "findFile" && ++asked == 2 ? fakes::Fault::Fail : fakes::Fault::None;
    };
    EXPECT_EQ(open(apart).substr(0, 1), "1");
    EXPECT_EQ(asked, 2);
}

TEST_F(CatalogueTest, TellsWhyADocumentCannotBeUsed) {
    const std::string table =
        "<bands id='t'><bucket id='b' number='0'><name>b</name></bucket>"
        "<band code='B1' type='red'/></bands>";
    const std::string name = "<name>p</name>";
    const std::pair<std::string, std::string> cases[] = {
        {"", "is not a whole XML document"},
        {kDocument.substr(0, kDocument.size() - 30), "an end tag that does not match"},
        {catalogueOf("\n<terms>\n</term>"), "line 3: an end tag that does not match"},
        {"<catalogue>\n<!--", "line 1: an element without its end tag"},
        {"<!DOCTYPE catalogue []>" + kDocument, "line 1: a document type"},
        {utf16("<!DOCTYPE catalogue []>" + catalogueOf("")), "line 1: a document type"},
        {kDocument + "more", "line 28: text outside the root element"},
        {catalogueOf("") + "<![CDATA[more]]>", "text outside the root element"},
        {catalogueOf("\n<!-- caf\xE9 -->"), "line 2: bytes that are not UTF-8"},
        {catalogueOf("<!-- \xED\xA0\x80 -->"), "bytes that are not UTF-8"},
        {catalogueOf("\x01"), "line 1: a control character"},
        {catalogueOf("a & b"), "line 1: \"&\" without a known reference"},
        {catalogueOf("<term id='&uuml;'/>"), "without a known reference"},
        {catalogueOf("&#1;"), "without a known reference"},
        {catalogueOf("]]>"), "outside a CDATA section"},
        {catalogueOf("<term id=a/>"), "an attribute without a value in quotes"},
        {catalogueOf("<term id='<'/>"), "\"<\" in an attribute"},
        {catalogueOf("<term id='a'id='b'/>"), "without a blank between"},
        {catalogueOf("<term id='a' id='b'/>"), "\"id\" is there for the second time"},
        {"<storage/>", "is not a catalogue"},
        {"<catalogue version='2'/>", "another version than 1"},
        {std::string((std::size_t{1} << 20U) + 1, ' '), "is larger than a catalogue may be"},
        {catalogueOf("<products/>"), "<products> is not known here"},
        {catalogueOf("<product id='p' colour='red'/>"),
         "product \"p\": <product> has an unknown attribute \"colour\""},
        {catalogueOf("<product id='p' bands='t'/>"), "needs a band table above it named \"t\""},
        {catalogueOf(table + "<product id='p' bands='t'><name>p</name></product>"),
         "product \"p\" needs a <name>, a <file>, a <bucket> and a <band>"},
        {catalogueOf(table + "<product id='p' bands='t'>" + name + "<file>x</file></product>"),
         "product \"p\": <file> \"x\" needs one {band}"},
        {catalogueOf(table + "<product id='p' bands='t'>" + name +
                     "<file bucket='c'>{band}</file></product>"),
         "needs a <bucket> above it named \"c\""},
        {catalogueOf(table + "<product id='p' bands='t'>" + name +
                     "<file>1/2/3/4/5/6/7/8/9/{band}</file></product>"),
         "has too many folders"},
        {catalogueOf("<product id='p'><name>p</name><file>{band}</file>"
                     "<band code='B1' type='red'/></product>"),
         "needs a <name>, a <file>, a <bucket> and a <band>"},
        {catalogueOf(table + "<product id='p' bands='t t'/>"), "share a code"},
        {catalogueOf(table + table), "is there for the second time"},
        {catalogueOf("<bands id='t'><bucket id='b' number='0x'/></bands>"),
         "band table \"t\": <bucket> \"number\" is not a number from 0 to 9999"},
        {catalogueOf("<product id='p' no-data='nan'/>"), "\"no-data\" is not a number from -1000"},
        {catalogueOf("<product id='p'><layer code='a' role='band?'/></product>"),
         "\"role\" cannot be \"band?\""},
        {catalogueOf("<product id='p'><layer code='a' role='band'/></product>"),
         "cannot be a band"},
        {catalogueOf("<term id='a'><name/></term>"), "needs a text"},
    };
    for (const auto& [document, reason] : cases) {
        EXPECT_THAT(use(document), HasSubstr(reason));
        EXPECT_EQ(kest::currentCatalogue(), nullptr);
    }
    const std::string good =
        "<!-- <!DOCTYPE a> & --><term id='a'><name><![CDATA[<!DOCTYPE a> & b]]> &#228;\xC3\xA4"
        "</name></term>";
    EXPECT_EQ(use("\xEF\xBB\xBF" + catalogueOf(good) + "\n<!-- end -->\n"), "");
    EXPECT_EQ(use(utf16(catalogueOf("<term id = 'a' ><name>a</name></term >"))), "");
    const std::pair<std::string, const char*> bands[] = {
        {"code='B1' type='red'", "\"code\" that is empty or there for the second time"},
        {"code='a|' type='red'", "\"code\" that is empty or there for the second time"},
        {"code='B3' type='mauve'", "\"type\" cannot be \"mauve\""},
        {"code='B3' type='red' channel='grey'", "\"channel\" cannot be \"grey\""},
        {"code='B3' type='red' centre='-1' width='1'", "\"centre\" is not a number from 0"},
        {"code='B3' type='red' centre='nan' width='1'", "\"centre\" is not a number from 0"},
        {"code='B3' type='red' order='1000'", "\"order\" is not a number from"},
        {"code='B3' type='red' term='none'", "needs a <term> above it named \"none\""},
    };
    for (const auto& [attributes, reason] : bands) {
        std::string broken = kDocument;
        broken.insert(broken.find("<layer"), "<band " + attributes + "/>");
        EXPECT_THAT(use(broken), HasSubstr(reason));
    }
    EXPECT_FALSE(codec_.setProductCatalogue(Pyxis::fileSpecifier("/none/catalogue.xml")));
}

/// So many times a text with a number in it.
std::string numbered(int count, const std::string& before, const std::string& after) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += before + std::to_string(i) + after;
    }
    return text;
}

TEST_F(CatalogueTest, BoundsWhatADocumentCanAskFor) {
    const std::string bucket = "<bucket id='b' number='0'/>";
    const std::string table =
        "<bands id='t'>" + bucket + numbered(1000, "<band code='B", "' type='red'/>") + "</bands>";
    const std::string product = "<product id='p' bands='t'><name>p</name>";
    const std::pair<std::string, const char*> cases[] = {
        {table + numbered(21, "<product id='",
                          "' bands='t'><name>p</name><file>{band}</file></product>"),
         "product \"20\" has too many bands"},
        {table + product + numbered(21, "<file>x", "{band}</file>") + "</product>",
         "too many bands"},
        {"<term id='t'>" + numbered(31, "<name language='", "'>t</name>") + "</term>",
         "<name> is one too many"},
        {"<product id='p'>" + bucket + "<band code='B' type='red'/><name>p</name>" +
             numbered(51, "<file>x", "{band}</file>") + "</product>",
         "too many file names"},
    };
    for (const auto& [content, reason] : cases) {
        EXPECT_THAT(use(catalogueOf(content)), HasSubstr(reason));
    }
}

TEST_F(CatalogueTest, TakesSeveralDocumentsAndTriesThemInOrder) {
    const auto document = [](const std::string& id) {
        return catalogueOf("<product id='" + id +
                           "'><name>p</name><file>{band}</file><bucket id='b' number='0'/>"
                           "<band code='B1' type='red'/></product>");
    };
    const fakes::TempFile first("first", document("first"));
    const fakes::TempFile second("second", document("second"));
    const fakes::TempFile again("again", document("first"));
    ASSERT_TRUE(codec_.setProductCatalogue(fakes::setOf({first.path(), second.path()})));
    const auto files = kest::currentCatalogue()->filesNamed(u"/d/b1.TIF");
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].product->id + files[1].product->id, "firstsecond");
    Pyxis::StringBuffer reason;
    EXPECT_FALSE(codec_.setProductCatalogue(fakes::setOf({first.path(), again.path()}), &reason));
    EXPECT_EQ(Pyxis::toUtf8(reason),
              again.path() + ": product \"first\" is there for the second time");
}
