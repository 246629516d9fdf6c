#include "tool/terminal/TerminalText.h"

#include <gtest/gtest.h>

namespace kestms {
namespace {

TEST(TerminalText, EscapesWhatWouldSteerATerminal) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain näme 波", "plain näme 波"},
        {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {"\x1b[31mred", "\\x1b[31mred"},
        {"c1 \xC2\x9B", "c1 \\x9b"},
        {"bad \xFF\xC3", "bad \\xff\\xc3"},
        {"turned \xE2\x80\xAE", "turned \\u202e"},
        {"sat \xF0\x9F\x9B\xB0", "sat \xF0\x9F\x9B\xB0"},
    };
    for (const auto& [raw, shown] : cases) {
        EXPECT_EQ(printable(raw), shown);
    }
    EXPECT_EQ(printableName(std::string(5000, 'x')), std::string(4096, 'x') + "...");
}

TEST(TerminalText, CountsColumns) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"", 0}, {"abc", 3}, {"e\xCC\x81", 1}, {"近赤外", 6}, {"ｶﾞ", 2}, {"\xF0\x9F\x9B\xB0", 2}};
    for (const auto& [text, width] : cases) {
        EXPECT_EQ(displayWidth(text), width) << text;
    }
}

TEST(TerminalText, AlignsColumnsByDisplayWidth) {
    TextTable table({{"Name"}, {"N", TextTable::Align::Right}, {"Last"}});
    table.addRow({"赤", "7", "x\n"});
    table.addRow({"red é", "12", ""});
    EXPECT_EQ(table.text(), "Name    N  Last\n赤      7  x\\n\nred é  12\n");
}

}  // namespace
}  // namespace kestms
