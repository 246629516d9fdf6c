#include "tool/terminal/TerminalText.h"
#include "tool/terminal/TextTable.h"

#include <gtest/gtest.h>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

TEST(TerminalText, EscapesWhatWouldSteerATerminal) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain näme 波", "plain näme 波"},
        {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {"\x1b[31mred", "\\x1b[31mred"},
        {"c1 \xC2\x9B", "c1 \\x9b"},
        {"bad \xFF\xC3", "bad \\xff\\xc3"},
        {"turned \xE2\x80\xAE \xD8\x9C", "turned \\u202e \\u061c"},
        {"sat \xF0\x9F\x9B\xB0", "sat \xF0\x9F\x9B\xB0"},
    };
    for (const auto& [raw, shown] : cases) {
        EXPECT_EQ(printable(raw), shown);
    }
    EXPECT_EQ(printableName(std::string(5000, 'x')), std::string(4096, 'x') + "...");
}

TEST(TerminalText, EscapesReasonsAndDropsARepeatedName) {
    const std::array<const char*, 3> cases[] = {
        {"a.tif", "is empty", "a.tif: is empty"},
        {"", "is empty", "'': is empty"},
        {"d/a.tif", "d/a.tif: cannot read", "d/a.tif: cannot read"},
        {"d/a.tif", "a.tif:TIFFOpen: \nbad\x1b]0;x\a", "d/a.tif: TIFFOpen:  bad\\x1b]0;x\\x07"},
        {"a\x1b.tif", "a\x1b.tif: no \xFF", "a\\x1b.tif: no \\xff"},
        {"a", "abc: x", "a: abc: x"},
    };
    for (const auto& [file, reason, message] : cases) {
        EXPECT_EQ(fileMessage(file, reason), message);
    }
    EXPECT_STREQ(Failure(ExitCode::Usage, "bad \x1b[2J").what(), "bad \\x1b[2J");
}

TEST(TerminalText, EscapesJson) {
    EXPECT_EQ(printableJson("{\n\"波 \xC2\x9B\xE2\x80\xAE\xF3\xA0\x80\x81\"}"),
              "{\n\"波 \\u009b\\u202e\\udb40\\udc01\"}");
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

TEST(TerminalText, FitsATableIntoTheTerminal) {
    using Fit = TextTable::Fit;
    TextTable table({{"N", TextTable::Align::Right, Fit::LeaveOutLast},
                     {"Name", TextTable::Align::Left, Fit::KeepStart},
                     {"T", TextTable::Align::Left, Fit::LeaveOut},
                     {"File", TextTable::Align::Left, Fit::KeepEnd}});
    table.addRow({"1", "a name of twenty and", "t", "folder/folder/file_B10.TIF"});
    const std::pair<std::size_t, const char*> cases[] = {
        {0, "1  a name of twenty and  t  folder/folder/file_B10.TIF\n"},
        {54, "1  a name of twenty and  t  folder/folder/file_B10.TIF\n"},
        {46, "1  a name of twenty and  t  ...er/file_B10.TIF\n"},
        {40, "1  a name of twe...  t  .../file_B10.TIF\n"},
        {37, "1  a name of twe...  .../file_B10.TIF\n"},
        {34, "a name of twe...  .../file_B10.TIF\n"},
        {10, "a name of twe...  .../file_B10.TIF\n"},
    };
    for (const auto& [columns, row] : cases) {
        const std::string text = table.text(columns);
        EXPECT_EQ(text.substr(text.find('\n') + 1), row) << columns;
    }
    EXPECT_EQ(shortenedLeft("日本語の名前", 9), "...の名前");
    EXPECT_EQ(shortenedRight("日本語の名前", 8), "日本...");
}

}  // namespace
}  // namespace kestms
