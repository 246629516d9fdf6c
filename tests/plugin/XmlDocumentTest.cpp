#include "sets/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using kest::xml::Document;
using kest::xml::Element;

std::string rewritten(std::string_view text) {
    const auto document = Document::parse(text);
    EXPECT_EQ(Document::error(document->root()), "");
    return document->toText(document->root());
}

std::string repeated(std::string_view piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

struct RewriteCase {
    std::string_view parsed;
    std::string_view written;
};

class XmlRewriteTest : public testing::TestWithParam<RewriteCase> {};

TEST_P(XmlRewriteTest, WritesWhatWasRead) {
    EXPECT_EQ(rewritten(GetParam().parsed), GetParam().written) << GetParam().parsed;
}

INSTANTIATE_TEST_SUITE_P(
    Markup, XmlRewriteTest,
    testing::Values(RewriteCase{"<a><b x='1'/><c></c></a>", "<a><b x=\"1\"></b><c></c></a>"},
                    RewriteCase{"<a>one<b/></a>\n", "<a>one<b></b></a>"},
                    RewriteCase{"<a x='1' x='2' y/>", "<a x=\"1\" y=\"\"></a>"},
                    RewriteCase{"<a><![CDATA[x<&y]]></a>", "<a>x&lt;&amp;y</a>"},
                    RewriteCase{"<a><!-- <b/> --><c/></a>", "<a><c></c></a>"},
                    RewriteCase{"<?xml version='1.0'?><a/><?t after?>",
                                "<?xml version='1.0'?>\n<a></a>\n<?t after?>"},
                    RewriteCase{"<?t?><a/>", "<?t?>\n<a></a>"},
                    // The first of several runs of text is lost to a gap, later ones are joined.
                    RewriteCase{"<a>abc<b/>de<c/>f</a>", "<a><b></b>de<c></c>f</a>"},
                    RewriteCase{std::string_view("\xFF\xFE<\0a\0>\0\xAC\x20<\0/\0a\0>\0", 18),
                                "<a>\xE2\x82\xAC</a>"},
                    RewriteCase{std::string_view("\xFE\xFF\0<\0a\0/\0>", 10), "<a></a>"}));

INSTANTIATE_TEST_SUITE_P(
    References, XmlRewriteTest,
    testing::Values(RewriteCase{"<a>&#65;&#x20AC;&#0;&#65 &nix;&lt;</a>",
                                "<a>A\xE2\x82\xAC&amp;#0;&amp;#65 &amp;nix;&lt;</a>"},
                    RewriteCase{"<a>&amp;lt;</a>", "<a>&amp;lt;</a>"},
                    RewriteCase{"<a x='1\n2\t3&#xA;4\r\n5'>6\r\n7\r8</a>",
                                "<a x=\"1 2 3&#xA;4 5\">6\n7\n8</a>"},
                    RewriteCase{"<a x='&quot;&#xD;&#9;>'>\"\t&#13;</a>",
                                "<a x=\"&quot;&#xD;&#x9;&gt;\">\"\t&#xD;</a>"}));

INSTANTIATE_TEST_SUITE_P(
    InternalSubset, XmlRewriteTest,
    testing::Values(
        RewriteCase{"<!DOCTYPE a [<!ENTITY e 'v&f;'><!ENTITY x SYSTEM '/etc/hostname'>"
                    "<!ENTITY f \"F\">]><a x='&e;'>1&e;2&x;</a>",
                    "<a x=\"vF\">1vF2&amp;x;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY % p 'P'><!ENTITY e '%p;%q;'>]><a>&e;</a>",
                    "<a>P%q;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY e ''>]><a>x<b/>&e;</a>", "<a><b></b></a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a>&e;</a>", "<a>1</a>"},
        // A circle ends the subset: what comes after it is not read, what came before it is.
        RewriteCase{"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'><!ENTITY g 'G'>]><a>&e;&g;</a>",
                    "<a>&amp;f;&amp;g;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY e '&f;'>]>"
                    "<!DOCTYPE a [<!ENTITY f '&e;'><!ENTITY g 'G'>]><a>&g;</a>",
                    "<a>&amp;g;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY e 'E'><!ENTITY f '&e;'><!ENTITY e '&f;'>"
                    "<!ENTITY g 'G'>]><a>&f;&g;</a>",
                    "<a>E&amp;g;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY % p '%p;'><!ENTITY g 'G'>]><a>&g;</a>",
                    "<a>&amp;g;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ENTITY % p '&p;'><!ENTITY p 'P'>]><a>&p;</a>", "<a>P</a>"},
        RewriteCase{"<!DOCTYPE a [<!ATTLIST a d CDATA 'x' r CDATA #REQUIRED t (u|v) 'u'>\n"
                    "<!ATTLIST b f CDATA #FIXED \"y\" n NOTATION (m) #IMPLIED>] ><a d='1'><b/></a>",
                    "<a d=\"1\" t=\"u\"><b f=\"y\"></b></a>"},
        RewriteCase{"<!DOCTYPE a [<!ATTLIST a d CDATA bad><!ENTITY e 'E'>]><a>&e;</a>",
                    "<a>&amp;e;</a>"},
        RewriteCase{"<!DOCTYPE a [<!ATTLIST a d><!ENTITY e 'E'>]><a>&e;</a>", "<a>&amp;e;</a>"},
        RewriteCase{"<!DOCTYPE a [<!-- - --><!ENTITY d 'D'><!-- x -- y --><!ENTITY e 'E'>]>"
                    "<a>&d;&e;</a>",
                    "<a>D&amp;e;</a>"},
        RewriteCase{"<!DOCTYPE a [<?>t 1?>]><a/><!DOCTYPE a [<?t 2?>]>",
                    "<?>t 1?>\n<a></a>\n<?t 2?>"},
        RewriteCase{"<!DOCTYPE a [<!ATTLIST a c CDATA 'x' /d CDATA 'y'>]><a/>", "<a c=\"x\"></a>"},
        RewriteCase{"<!DOCTYPE a SYSTEM 'x'><a/>", "<a></a>"}));

INSTANTIATE_TEST_SUITE_P(
    Faults, XmlRewriteTest,
    testing::Values(RewriteCase{"", ""}, RewriteCase{"no markup", ""}, RewriteCase{"< a/>", ""},
                    RewriteCase{"<a><b/>", "<a><b></b></a>"},
                    RewriteCase{"<a><b></a>", "<a><b></b></a>"}, RewriteCase{"<a/><b/>", "<a></a>"},
                    RewriteCase{"<a><b x='1></b></a>", "<a></a>"},
                    RewriteCase{"<a><b/><c", "<a><b></b></a>"},
                    RewriteCase{"<a><b/ ></a>", "<a></a>"},
                    RewriteCase{"<a><!-- x -- y --></a>", "<a></a>"},
                    RewriteCase{"<a><![CDATA[x</a>", "<a></a>"},
                    RewriteCase{"<a><?x</a>", "<a></a>"}, RewriteCase{"<!DOCTYPE a [<a/>", ""},
                    RewriteCase{std::string_view("<a><b/></a\0>", 12), "<a><b></b></a>"},
                    RewriteCase{std::string_view("<a/>\0", 5), "<a></a>"}));

INSTANTIATE_TEST_SUITE_P(
    Encodings, XmlRewriteTest,
    testing::Values(RewriteCase{std::string_view("\xFF\xFE<\0a\0>\0\xE9\0\x34\xD8\x1E\xDD\0\xD8x\0"
                                                 "\0\xDC<\0/\0a\0>\0\0\xD8",
                                                 30),
                                "<a>\xC3\xA9\xF0\x9D\x84\x9E\xEF\xBF\xBDx\xEF\xBF\xBD</a>"},
                    RewriteCase{"\xFE\xFF", ""},
                    RewriteCase{"<!DOCTYPE a [<!ENTITY e 'E'>]><a x='&e;\r\n\t1'>&e;\r\n2\r3&#65;"
                                "<![CDATA[&e;\r\n]]></a>",
                                "<a x=\"E  1\">E\n2\n3A&amp;e;\n</a>"}));

TEST(XmlDocumentTest, KeepsChildrenInOrderOfTheirOffsets) {
    Document document("r");
    Element* root = document.root();
    struct Added {
        std::string_view name;
        std::size_t offset;
    };
    int number = 0;
    for (const auto& [name, offset] : {Added{"b", 2}, Added{"a", 5}, Added{"a", 1}, Added{"b", 2},
                                       Added{"c", 2}, Added{"a", 3}, Added{"b", 0}}) {
        document.setAttribute(document.addChild(root, name, offset), "n", std::to_string(number++));
    }
    const auto chain = [&document](const Element* first, auto next) {
        std::string text;
        for (const Element* each = first; each != nullptr; each = (each->*next)()) {
            text += std::string(each->name()) + std::string(*document.attribute(each, "n")) + ' ';
        }
        return text;
    };
    EXPECT_EQ(chain(root->child(), &Element::ordered), "b6 a2 b0 b3 c4 a5 a1 ");
    EXPECT_EQ(chain(document.child(root, "a"), &Element::next), "a2 a5 a1 ");
    EXPECT_EQ(chain(root->child(), &Element::sibling), "b6 a2 c4 ");
    EXPECT_EQ(chain(document.get(root, {{"b", 2}}), &Element::next), "b3 ");
    EXPECT_EQ(document.get(root, {{"a", 3}}), nullptr);
    EXPECT_EQ(document.get(root, {{"a", -1}, {"x", 0}}), document.child(root, "a"));
    EXPECT_EQ(document.get(root, {{"", 0}}), root);
    // Numbers far along a chain that grows at its end, in between, and shrinks.
    const Element* many = document.addChild(root, "m", 100);
    const auto far = [&](int index) {
        const Element* found = document.index(many, index);
        return found == nullptr ? 0 : found->offset();
    };
    for (std::size_t offset = 102; offset < 300; offset += 2) {
        document.addChild(root, "m", offset);
        EXPECT_EQ(far(static_cast<int>(offset / 2 - 50)), offset);
        EXPECT_EQ(far(static_cast<int>(offset / 2 - 49)), 0U);
    }
    document.addChild(root, "m", 121);
    EXPECT_EQ(far(30), 158U);
    many = many->next();
    EXPECT_EQ(far(30), 160U);
    const Element* before = document.index(many, 2);
    document.cut(const_cast<Element*>(document.index(many, 3)));
    EXPECT_EQ(far(30), 162U);
    EXPECT_EQ(before->next()->offset(), 110U);
    while (const Element* left = document.child(root, "m")) {
        document.cut(const_cast<Element*>(left));
    }

    Element* cut = document.cut(document.child(root, "b"));
    EXPECT_EQ(cut->ordered(), nullptr);
    EXPECT_EQ(chain(root->child(), &Element::ordered), "a2 b0 b3 c4 a5 a1 ");
    EXPECT_EQ(chain(root->child(), &Element::sibling), "a2 b0 c4 ");
}

TEST(XmlDocumentTest, SetsReplacesAndRemovesAttributes) {
    Document document("r");
    Element* root = document.root();
    document.setAttribute(root, "a", "1");
    document.setAttribute(root, "b", "2");
    document.setAttribute(root, "c", "3");
    document.setAttribute(root, "b", "<\">");
    document.setAttribute(root, "a", std::nullopt);
    document.setAttribute(root, "z", std::nullopt);
    document.setText(root, "t&");
    EXPECT_EQ(document.toText(root), "<r b=\"&lt;&quot;&gt;\" c=\"3\">t&amp;</r>");
    EXPECT_EQ(document.attribute(root, "a"), std::nullopt);
}

TEST(XmlDocumentTest, HasNoAnswersForNull) {
    Document document("r");
    EXPECT_EQ(document.addChild(nullptr, "x", 0), nullptr);
    document.setAttribute(nullptr, "x", "1");
    document.setText(nullptr, "x");
    EXPECT_EQ(document.cut(nullptr), nullptr);
    EXPECT_EQ(document.child(static_cast<const Element*>(nullptr), "x"), nullptr);
    EXPECT_EQ(document.attribute(nullptr, "x"), std::nullopt);
    EXPECT_EQ(document.get(nullptr, {{"x", 0}}), nullptr);
    EXPECT_EQ(document.toText(nullptr), "");
}

TEST(XmlDocumentTest, TellsProcessingInstructionsByTarget) {
    const auto document =
        Document::parse("<?xml version='1.0' standalone = 'yes'?><?t 1?><a><?t 2?></a><?u x y ?>");
    const auto& instructions = document->processingInstructions("t");
    ASSERT_EQ(instructions.size(), 2U);
    EXPECT_EQ(instructions[0].text, "1");
    EXPECT_TRUE(instructions[1].afterRoot);
    EXPECT_EQ(document->processingInstructions("u").at(0).text, "x y ");
    EXPECT_TRUE(document->processingInstructions("v").empty());
    EXPECT_TRUE(document->isStandalone());
}

TEST(XmlDocumentTest, SurvivesDocumentsOfAMillionElements) {
    constexpr int kMany = 1'000'000;
    EXPECT_EQ(rewritten(repeated("<a>", kMany) + repeated("</a>", kMany)).size(), 7U * kMany);
    EXPECT_EQ(rewritten("<r>" + repeated("<a/>", kMany) + "</r>").size(), 7U * kMany + 7);
    std::string names = "<r>";
    for (int i = 0; i < kMany / 4; ++i) {
        names += "<n" + std::to_string(i) + "/>";
    }
    const auto document = Document::parse(names + "</r>");
    EXPECT_NE(document->child(document->root(), "n249999"), nullptr);
    EXPECT_EQ(document->child(document->root(), "n250000"), nullptr);

    // Each of these runs for minutes where a step goes through the whole text.
    const std::string name(kMany, 'n');
    EXPECT_EQ(
        rewritten("<!DOCTYPE r [<!ENTITY " + name + " 'x'>]><r>" + repeated("&", kMany) + "</r>")
            .size(),
        5U * kMany + 7);
    std::string chain = "<!ENTITY c0 '&end;'>";
    std::string awaited;
    std::string declared;
    for (int i = 1; i < kMany / 20; ++i) {
        const std::string number = std::to_string(i);
        chain += "<!ENTITY c" + number + " '&c" + std::to_string(i - 1) + ";'>";
        awaited += "&a" + number + ';';
        declared += "<!ENTITY a" + number + " '&c49999;'>";
    }
    EXPECT_EQ(rewritten("<!DOCTYPE r [<!ENTITY z '" + awaited + "'>" + chain + declared +
                        "<!ENTITY e 'E'>]><r>&e;</r>"),
              "<r>E</r>");
}

TEST(XmlDocumentTest, BoundsWhatEntitiesGrowTo) {
    std::string text = "<!DOCTYPE r [<!ENTITY e0 'laugh'>";
    for (int i = 1; i < 40; ++i) {
        const std::string reference = "&e" + std::to_string(i - 1) + ";";
        text += "<!ENTITY e" + std::to_string(i) + " '" + repeated(reference, 10) + "'>";
    }
    const auto bomb = Document::parse(text + "]><r>&e39;</r>");
    EXPECT_GT(bomb->root()->text().size(), 1'000'000U);
    EXPECT_LT(bomb->root()->text().size(), 80'000'000U);

    text = "<!DOCTYPE r [<!ENTITY e0 'end'>";
    for (int i = 1; i < 3000; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    }
    const auto deep = Document::parse(text + "]><r>&e900;|&e2999;</r>");
    EXPECT_EQ(deep->root()->text(), "end|&e1999;");
}

}  // namespace
