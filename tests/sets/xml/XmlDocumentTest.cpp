#include "sets/xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using kest::xml::Document;
using kest::xml::Element;
using namespace std::string_view_literals;

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

/// Declares entities e0, e1, ..., each made of references to the one before.
std::string entities(std::string_view first, int count, int references) {
    std::string text = "<!ENTITY e0 '" + std::string(first) + "'>";
    for (int i = 1; i < count; ++i) {
        const std::string before = "&e" + std::to_string(i - 1) + ";";
        text += "<!ENTITY e" + std::to_string(i) + " '" + repeated(before, references) + "'>";
    }
    return text;
}

/// What is parsed, and what is written of it.
constexpr std::pair<std::string_view, std::string_view> kRewriteCases[] = {
    // Markup.
    {"<a><b x='1'/><c></c></a>", "<a><b x=\"1\"></b><c></c></a>"},
    {"<a>one<b/></a>\n", "<a>one<b></b></a>"},
    {"<a x='1' x='2' y/>", "<a x=\"1\" y=\"\"></a>"},
    {"<a><![CDATA[x<&y]]></a>", "<a>x&lt;&amp;y</a>"},
    {"<a><!-- <b/> --><c/></a>", "<a><c></c></a>"},
    {"<?xml version='1.0'?><a/><?t after?>", "<?xml version='1.0'?>\n<a></a>\n<?t after?>"},
    {"<?t?><a/>", "<?t?>\n<a></a>"},
    // The first of several runs of text is lost to a gap, later ones are joined.
    {"<a>abc<b/>de<c/>f</a>", "<a><b></b>de<c></c>f</a>"},
    // But a first run in which some replacement was longer than its reference is joined as well.
    {"<a>x&amp;&quot;&apos;<b/>y</a>", "<a><b></b>y</a>"},
    {"<a>x&lt;<b/>y</a>", "<a>x&lt;<b></b>y</a>"},
    {"<a>&amp;&gt;&amp;<b/>y</a>", "<a>&amp;&gt;&amp;<b></b>y</a>"},
    {"<!DOCTYPE a [<!ENTITY e 'abc'>]><a>x&e;<b/>y</a>", "<a><b></b>y</a>"},
    {"<!DOCTYPE a [<!ENTITY e 'abcd'>]><a>x&e;<b/>y</a>", "<a>xabcd<b></b>y</a>"},
    {"<!DOCTYPE a [<!ENTITY f 'abcd'><!ENTITY e '&f;'>]><a>&e;<b/>y</a>", "<a>abcd<b></b>y</a>"},
    {"<!DOCTYPE a [<!ENTITY f '<'><!ENTITY e '&f;'>]><a>&e;<b/>y</a>", "<a><b></b>y</a>"},
    {"<!DOCTYPE a [<!ENTITY e ''>]><a>&e;<b/>x<c/>y</a>", "<a><b></b>x<c></c>y</a>"},
    {"<!DOCTYPE a [<!ENTITY f ''><!ENTITY e '&f;&f;'>]><a>&e;<b/>x<c/>y</a>",
     "<a><b></b>x<c></c>y</a>"},
    {"\xFF\xFE<\0a\0>\0\xAC\x20<\0/\0a\0>\0"sv, "<a>\xE2\x82\xAC</a>"},
    // References.
    {"<a>&#65;&#x20AC;&#0;&#65 &nix;&lt;</a>",
     "<a>A\xE2\x82\xAC&amp;#0;&amp;#65 &amp;nix;&lt;</a>"},
    {"<a>&amp;lt;</a>", "<a>&amp;lt;</a>"},
    {"<a x='1\n2\t3&#xA;4\r\n5'>6\r\n7\r8</a>", "<a x=\"1 2 3&#xA;4 5\">6\n7\n8</a>"},
    {"<a x='&quot;&#xD;&#9;>'>\"\t&#13;</a>", "<a x=\"&quot;&#xD;&#x9;&gt;\">\"\t&#xD;</a>"},
    // The internal subset.
    {"<!DOCTYPE a [<!ENTITY e 'v&f;'><!ENTITY x SYSTEM '/etc/hostname'>"
     "<!ENTITY f \"F\">]><a x='&e;'>1&e;2&x;</a>",
     "<a x=\"vF\">1vF2&amp;x;</a>"},
    {"<!DOCTYPE a [<!ENTITY % p 'P'><!ENTITY e '%p;%q;'>]><a>&e;</a>", "<a>P%q;</a>"},
    {"<!DOCTYPE a [<!ENTITY e ''>]><a>x<b/>&e;</a>", "<a><b></b></a>"},
    {"<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a>&e;</a>", "<a>1</a>"},
    // A circle ends the subset: only what comes before it is read.
    {"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'><!ENTITY g 'G'>]><a>&e;&g;</a>",
     "<a>&amp;f;&amp;g;</a>"},
    {"<!DOCTYPE a [<!ENTITY e '&f;'>]>"
     "<!DOCTYPE a [<!ENTITY f '&e;'><!ENTITY g 'G'>]><a>&g;</a>",
     "<a>&amp;g;</a>"},
    {"<!DOCTYPE a [<!ENTITY e 'E'><!ENTITY f '&e;'><!ENTITY e '&f;'>"
     "<!ENTITY g 'G'>]><a>&f;&g;</a>",
     "<a>E&amp;g;</a>"},
    {"<!DOCTYPE a [<!ENTITY % p '%p;'><!ENTITY g 'G'>]><a>&g;</a>", "<a>&amp;g;</a>"},
    {"<!DOCTYPE a [<!ENTITY % p '&p;'><!ENTITY p 'P'>]><a>&p;</a>", "<a>P</a>"},
    {"<!DOCTYPE a [<!ATTLIST a d CDATA 'x' r CDATA #REQUIRED t (u|v) 'u'>\n"
     "<!ATTLIST b f CDATA #FIXED \"y\" n NOTATION (m) #IMPLIED>] ><a d='1'><b/></a>",
     "<a d=\"1\" t=\"u\"><b f=\"y\"></b></a>"},
    {"<!DOCTYPE a [<!ATTLIST a d CDATA bad><!ENTITY e 'E'>]><a>&e;</a>", "<a>&amp;e;</a>"},
    {"<!DOCTYPE a [<!ATTLIST a d><!ENTITY e 'E'>]><a>&e;</a>", "<a>&amp;e;</a>"},
    {"<!DOCTYPE a [<!-- - --><!ENTITY d 'D'><!-- x -- y --><!ENTITY e 'E'>]>"
     "<a>&d;&e;</a>",
     "<a>D&amp;e;</a>"},
    {"<!DOCTYPE a [<?>t 1?>]><a/><!DOCTYPE a [<?t 2?>]>", "<?>t 1?>\n<a></a>\n<?t 2?>"},
    {"<!DOCTYPE a [<!ATTLIST a c CDATA 'x' /d CDATA 'y'>]><a/>", "<a c=\"x\"></a>"},
    {"\xFF\xFE<\0a\0>\0\xE9\0\x34\xD8\x1E\xDD\0\xD8x\0"
     "\0\xDC<\0/\0a\0>\0\0\xD8"sv,
     "<a>\xC3\xA9\xF0\x9D\x84\x9E\xEF\xBF\xBDx\xEF\xBF\xBD</a>"},
    {"<!DOCTYPE a [<!ENTITY e 'Earth'>]><a x='&e;\r\n\t1'>&e;\r\n2\r3&#65;"
     "<![CDATA[&e;\r\n]]></a>",
     "<a x=\"Earth  1\">Earth\n2\n3A&amp;e;\n</a>"},
};

TEST(XmlDocumentTest, WritesWhatWasRead) {
    for (const auto& [parsed, written] : kRewriteCases) {
        EXPECT_EQ(rewritten(parsed), written) << parsed;
    }
}

TEST(XmlDocumentTest, ReadsAsFarAsTheFirstFault) {
    const std::pair<std::string_view, std::vector<std::string_view>> cases[] = {
        {"", {"", "no markup", "< a/>", "<!DOCTYPE a [<a/>", "\xFE\xFF"}},
        {"<a></a>",
         {"<a/><b/>", "<a><b x='1></b></a>", "<a><b/ ></a>", "<a><!-- x -- y --></a>",
          "<a><![CDATA[x</a>", "<a><?x</a>", "<a/>\0"sv, "<!DOCTYPE a SYSTEM 'x'><a/>",
          "\xFE\xFF\0<\0a\0/\0>"sv}},
        {"<a><b></b></a>", {"<a><b/>", "<a><b></a>", "<a><b/><c", "<a><b/></a\0>"sv}},
    };
    for (const auto& [written, texts] : cases) {
        for (const std::string_view parsed : texts) {
            EXPECT_EQ(rewritten(parsed), written) << parsed;
        }
    }
}

TEST(XmlDocumentTest, KeepsChildrenInOrderOfTheirOffsets) {
    Document document("r");
    Element* root = document.root();
    int number = 0;
    using Added = std::pair<const char*, std::size_t>;
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

    Element* cut = document.cut(document.child(root, "b"));
    EXPECT_EQ(cut->ordered(), nullptr);
    EXPECT_EQ(chain(root->child(), &Element::ordered), "a2 b0 b3 c4 a5 a1 ");
    EXPECT_EQ(chain(root->child(), &Element::sibling), "a2 b0 c4 ");
    document.cut(document.child(root, "a"));
    document.cut(const_cast<Element*>(document.get(root, {{"b", 1}})));
    document.cut(document.child(root, "c"));
    EXPECT_EQ(chain(root->child(), &Element::ordered), "b0 a5 a1 ");
    EXPECT_EQ(chain(root->child(), &Element::sibling), "b0 a5 ");
    document.setAttribute(document.addChild(root, "c", 9), "n", "7");
    EXPECT_EQ(chain(root->child(), &Element::sibling), "b0 a5 c7 ");
    // Of one offset, the next of a name may stand before what was added later.
    Document level("r");
    for (const char* name : {"x", "x", "y"}) {
        level.setAttribute(level.addChild(level.root(), name, 0), "n", "");
    }
    level.cut(level.child(level.root(), "x"));
    EXPECT_EQ(chain(level.root()->child(), &Element::sibling), "x y ");
}

TEST(XmlDocumentTest, SetsReplacesAndRemovesAttributes) {
    Document document("r");
    Element* root = document.root();
    for (const char* name : {"a", "b", "c"}) {
        document.setAttribute(root, name, name);
    }
    document.setAttribute(root, "b", "<\">");
    document.setAttribute(root, "a", std::nullopt);
    document.setAttribute(root, "z", std::nullopt);
    document.setText(root, "t&");
    EXPECT_EQ(document.toText(root), "<r b=\"&lt;&quot;&gt;\" c=\"c\">t&amp;</r>");
    EXPECT_EQ(document.attribute(root, "a"), std::nullopt);
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

    // Each of these takes minutes if a step walks the whole text.
    const std::string name(kMany, 'n');
    EXPECT_EQ(
        rewritten("<!DOCTYPE r [<!ENTITY " + name + " 'x'>]><r>" + repeated("&", kMany) + "</r>")
            .size(),
        5U * kMany + 7);
    constexpr int kChain = kMany / 20;
    std::string awaited;
    std::string declared;
    for (int i = 1; i < kChain; ++i) {
        const std::string link = "a" + std::to_string(i);
        awaited += "&" + link + ";";
        declared += "<!ENTITY " + link + " '&e" + std::to_string(kChain - 1) + ";'>";
    }
    EXPECT_EQ(rewritten("<!DOCTYPE r [<!ENTITY z '" + awaited + "'>" +
                        entities("&end;", kChain, 1) + declared + "<!ENTITY e 'E'>]><r>&e;</r>"),
              "<r>E</r>");
}

TEST(XmlDocumentTest, GrowsAndShrinksInProportion) {
    constexpr int kMany = 100'000;
    Document document("r");
    Element* root = document.root();
    for (int i = 0; i < kMany; ++i) {
        document.addChild(root, i % 2 == 0 ? "m" : "n" + std::to_string(i), 0);
        document.setAttribute(root, "n" + std::to_string(i), "1");
    }
    for (int i = kMany; i-- > 0;) {
        document.setAttribute(root, "n" + std::to_string(i), "2");
    }
    EXPECT_EQ(document.attribute(root, "n99999"), "2");
    EXPECT_EQ(root->end() - root->begin(), kMany);
    document.setAttribute(root, "n40", std::nullopt);
    document.setAttribute(root, "n41", "3");
    document.setAttribute(root, "n40", "4");
    EXPECT_EQ((root->end() - 1)->value, "4");
    EXPECT_EQ(document.attribute(root, "n41"), "3");
    for (int i = 0; i < kMany - 3; ++i) {
        document.cut(const_cast<Element*>(root->child()));
    }
    EXPECT_EQ(root->child()->sibling()->name(), "m");
    EXPECT_EQ(document.child(root, "n99997"), root->child());
    EXPECT_EQ(document.child(root, "n99999"), root->lastChild());
    EXPECT_EQ(document.child(root, "n99995"), nullptr);
}

TEST(XmlDocumentTest, BoundsWhatEntitiesGrowTo) {
    const auto textOf = [](const std::string& declared, const std::string& used) {
        const auto document = Document::parse("<!DOCTYPE r [" + declared + "]><r>" + used + "</r>");
        return std::string(document->root()->text());
    };
    const std::size_t bomb = textOf(entities("laugh", 40, 10), "&e39;").size();
    EXPECT_TRUE(bomb > 1'000'000 && bomb < 5'000'000) << bomb;
    // The predefined ones do not count.
    const std::string used = "&e39;" + repeated("&lt;", 1000);
    EXPECT_TRUE(textOf(entities("laugh", 40, 10), used).ends_with(std::string(1000, '<')));
    EXPECT_EQ(textOf(entities("end", 3000, 1), "&e900;|&e2999;"), "end|&e1999;");
}

}  // namespace
