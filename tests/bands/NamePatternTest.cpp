#include "bands/catalogue/NamePattern.h"

#include <gtest/gtest.h>

#include "host/Text.h"

namespace {

const std::vector<std::u16string> kCodes{u"B1", u"B10", u"B1_X", u"QA"};

/// "scene code date" of a name, "-" for missing parts; "no", or the fault of the pattern.
std::string match(const std::string& pattern, const std::string& name) {
    std::string fault;
    const auto compiled = kest::NamePattern::compile(Pyxis::utf8ToWide(pattern), kCodes, fault);
    if (!compiled) {
        return fault;
    }
    const std::u16string wideName = Pyxis::utf8ToWide(name);
    const auto found = compiled->match(wideName);
    if (!found) {
        return "no";
    }
    return Pyxis::wideToUtf8(std::u16string(found->scene.value_or(u"-")) + u" " +
                             kCodes[found->code] + u" " +
                             std::u16string(found->date.empty() ? u"-" : found->date));
}

}  // namespace

TEST(NamePatternTest, MatchesWholeNamesWithoutGoingBack) {
    const struct {
        std::string pattern, name, answer;
    } cases[] = {{"{band}", "B1", "- B1 -"},
                 {"{band}", "B10", "- B10 -"},
                 {"{band}_X", "B1_X", "no"},  // the longest code takes it all
                 {"[a#_@]_{band}", "A7_Z_QA", "A7_Z QA -"},
                 {"[a#_@]_{band}", "AX_Z_QA", "no"},
                 {"[a#_@]_{band}", "A7_9_QA", "no"},
                 {"[s#+]{band}", "S0123B10", "S0123 B10 -"},
                 {"[s#+]{band}", "SB10", "no"},
                 {"#+1{band}", "991B1", "no"},  // a run keeps its last digit
                 {"(T1|T2|)_{band}", "T2_B1", "- B1 -"},
                 {"(T1|T2|)_{band}", "_B1", "- B1 -"},
                 {"(T|T1){band}", "T1B1", "- B1 -"},
                 {"[{date}T#]{band}", "20180629T1B1", "20180629T1 B1 20180629"},
                 {"{yearday}{band}", "2018180B1", "- B1 2018180"},
                 {"{date}{band}", "2018062B1", "no"},
                 {"{y/m/d}/{band}", "2018/6/290/B1", "no"},
                 {"{y/m/d}/{band}", "201/6/29/B1", "no"},
                 {"[f#]/r10m/{band}", "F1/R10M/B1", "F1 B1 -"},
                 {"\\#\\(\\[{band}", "#([B1", "- B1 -"},
                 {"{band}", "", "no"},
                 {"{band}", "B1 ", "no"},
                 {"{band}", "XB1", "no"}};
    for (const auto& test : cases) {
        EXPECT_EQ(match(test.pattern, test.name), test.answer) << test.pattern << ' ' << test.name;
    }
}

TEST(NamePatternTest, SaysWhatIsWrongWithAPattern) {
    const std::pair<std::string, std::string> cases[] = {
        {"B1", "needs one {band}"},
        {"{band}{band}", "needs one {band}"},
        {"[{band}", "lacks a ]"},
        {"]{band}[", "has a ] without a ["},
        {"[a][b]{band}", "has a second ["},
        {"(a|b{band}", "lacks a )"},
        {"(a|#){band}", "has a choice of more than plain texts"},
        {"{bond}{band}", "has a sign out of place; write \\ before one that stands for itself"},
        {"a|b{band}", "has a sign out of place; write \\ before one that stands for itself"},
        {"{band}\\", "ends in a \\"},
        {std::string(501, 'x'), "is too long"}};
    for (const auto& [pattern, fault] : cases) {
        EXPECT_EQ(match(pattern, "B1"), fault) << pattern;
    }
}
