#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "tool/manual/CommandText.h"
#include "tool/manual/Completion.h"
#include "tool/manual/ManualPage.h"

using testing::HasSubstr;
using testing::Not;

namespace kestms {
namespace {

/// A command line with one of every kind that pages and completions distinguish.
CommandText commandLineOfAllKinds() {
    static std::string text;
    static std::vector<std::string> files;
    static bool flag;
    CLI::App app("Does things", "kestms");
    app.add_option("--language", text, "Language: of all [texts]");
    CLI::App* pack = app.add_subcommand("pack", "Pack it's contents");
    pack->add_option("FILE", files, "Files")->required();
    pack->add_option("-c,--compress", text, "How")->check(CLI::IsMember({"lzw", "zstd"}));
    pack->add_flag("--fast", flag, "Do not wait");
    pack->footer(
        "First line\nof two, C:\\dir.\n\n.start with a dot\n\nExamples:\n  kestms pack a.tif");
    app.add_subcommand("list", "List them");
    return textOf(app);
}

/// What bash completes while the last of `words` is typed.
std::string completed(const std::string& script, const std::string& words) {
    const std::string file = testing::TempDir() + "/completion.bash";
    std::ofstream(file) << script
                        << "COMP_WORDS=(" + words +
                               ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                               "_kestms\necho -n \"${COMPREPLY[*]}\"\n";
    const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(("bash " + file).c_str(), "r"),
                                                       pclose);
    std::array<char, 4096> buffer{};
    const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), output.get());
    return {buffer.data(), size};
}

TEST(ManualTest, PagesEscapeTextAndMakeSectionsOfFooters) {
    const CommandText program = commandLineOfAllKinds();
    const std::string page = commandPage(program, program.commands.front(), "7.8");
    for (const char* part : {
             ".TH KESTMS\\-PACK 1 \"\" \"kestms 7.8\"",
             "kestms\\-pack \\- Pack it's contents\n",
             "[\\fIOPTIONS\\fR] \\fIFILE...\\fR\n",
             "of two, C:\\edir.\n",
             "\n\\&.start with a dot\n",
             ".TP\n\\fB\\-c\\fR, \\fB\\-\\-compress\\fR \\fIlzw|zstd\\fR\nHow\n",
             "\\fB\\-\\-fast\\fR\n",
             ".SH EXAMPLES\n.PP\n.nf\n  kestms pack a.tif\n.fi\n.SH SEE ALSO",
         }) {
        EXPECT_THAT(page, HasSubstr(part));
    }
    EXPECT_LT(page.find(".SH OPTIONS"), page.find(".SH EXAMPLES"));
    EXPECT_THAT(page, Not(HasSubstr("Examples:")));
    EXPECT_THAT(programPage(program, "7.8"), HasSubstr(".BR kestms\\-pack (1)\n"));
}

TEST(ManualTest, BashCompletesCommandsOptionsAndValues) {
    const std::string script = bashCompletion(commandLineOfAllKinds());
    const std::pair<const char*, const char*> cases[] = {
        {"kestms ''", "pack list -h --help --language"},
        {"kestms p", "pack"},
        {"kestms --language de pack --f", "--fast"},
        {"kestms pack --compress ''", "lzw zstd"},
        {"kestms pack x.tif -c z", "zstd"},
        {"kestms pack ''", ""},  // a file
        {"kestms list --f", ""},
    };
    for (const auto& [typed, expected] : cases) {
        EXPECT_EQ(completed(script, typed), expected) << typed;
    }
}

TEST(ManualTest, TextsOfOtherShellsAreQuoted) {
    const CommandText program = commandLineOfAllKinds();
    EXPECT_THAT(zshCompletion(program), HasSubstr("'pack:Pack it'\\''s contents'"));
    EXPECT_THAT(zshCompletion(program),
                HasSubstr("'--language[Language\\: of all \\[texts\\]]:value:_files'"));
    EXPECT_THAT(fishCompletion(program), HasSubstr("-s c -l compress -x -a 'lzw zstd' -d 'How'"));
}

}  // namespace
}  // namespace kestms
