#include "tool/scene/Inputs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <streambuf>
#include <thread>

#include "tests/tool/RunTool.h"
#include "tool/scene/RasterDirectory.h"

namespace kestms {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Inputs : public InDirectory {
  protected:
    Inputs() {
        for (const char* name : {"b10.tif", "b2.tif", "b1.tif"}) {
            write(name);
        }
        write("stack.tif", {.bands = 3});
    }

    /// The components that arguments name, as "NAME#FRAME"; names relative to the directory.
    Strings named(const Strings& arguments, const std::string& input = {}) {
        std::istringstream in(input);
        std::ostringstream ignored;
        Context context(in, ignored, ignored);
        Strings names;
        for (const Component& each : componentsOf(readSet(arguments, context, MissingFile::Fail))) {
            names.push_back(each.path.substr(directory_.path().size() + 1) + "#" +
                            std::to_string(each.frame));
        }
        return names;
    }
};

TEST_F(Inputs, TakeFilesFramesAndLists) {
    const std::string one = directory_ / "b1.tif";
    const std::string stack = directory_ / "stack.tif";
    EXPECT_THAT(named({one, stack}),
                ElementsAre("b1.tif#0", "stack.tif#0", "stack.tif#1", "stack.tif#2"));
    EXPECT_THAT(named({stack + "#2", one + "#0"}), ElementsAre("stack.tif#2", "b1.tif#0"));
    EXPECT_THAT(named({"-"}, " " + stack + "#1\t \r\n\n" + one),
                ElementsAre("stack.tif#1", "b1.tif#0"));
    EXPECT_THAT(named({one, "-"}, stack + "#1"), ElementsAre("b1.tif#0", "stack.tif#1"));
    fakes::writeFile(directory_ / "list.txt", one + "\n" + stack + "#2\n");
    EXPECT_THAT(named({"@" + (directory_ / "list.txt")}), ElementsAre("b1.tif#0", "stack.tif#2"));
    fakes::writeFile(directory_ / "list.txt", "# two bands\n" + one + "\t# the first\n #" + stack +
                                                  "\n" + stack + "#2 # #1");
    EXPECT_THAT(named({"@" + (directory_ / "list.txt")}), ElementsAre("b1.tif#0", "stack.tif#2"));
    const std::string odd = write("odd#7");
    EXPECT_THAT(named({odd, odd + "#0"}), ElementsAre("odd#7#0", "odd#7#0"));
}

TEST_F(Inputs, TakeTheRastersOfADirectoryInNaturalOrder) {
    write("noextension", {.transform = {}, .epsg = 0, .driver = "NITF"});
    fakes::writeFile(directory_ / "damaged.TIF", "II");
    for (const char* name : {"MTL.txt", "set.xml", ".hidden.tif", "other"}) {
        fakes::writeFile(directory_ / name, "text");
    }
    std::filesystem::create_directory(directory_ / "sub.tif");
    EXPECT_THAT(named({directory_.path()}),
                ElementsAre("b1.tif#0", "b2.tif#0", "b10.tif#0", "damaged.TIF#0", "noextension#0",
                            "stack.tif#0", "stack.tif#1", "stack.tif#2"));
}

TEST_F(Inputs, WarnOfAComponentThatIsGivenTwiceUnlessQuiet) {
    const std::string one = directory_ / "b1.tif";
    const Strings arguments = {"check", one, directory_.path() + "/./b1.tif", one + "#0", "-q"};
    const Outcome quiet = runTool(arguments);
    EXPECT_EQ(quiet.err, "");
    const Outcome outcome = runTool(Strings(arguments.begin(), arguments.end() - 1));
    EXPECT_EQ(outcome.err, "kestms: " + one + ": given 3 times, as many bands\n");
    EXPECT_EQ(outcome.out, quiet.out);
    EXPECT_EQ(runTool({"check", one, directory_ / "none", "-q"}).code, 3);
}

TEST_F(Inputs, OrderNamesByTheirNumbers) {
    const char* const ordered[] = {"", "a", "a01", "a1", "a1b", "a2", "a09x", "a10", "b", "é"};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            EXPECT_EQ(comesBefore(ordered[i], ordered[j]), i < j)
                << ordered[i] << " " << ordered[j];
        }
    }
    EXPECT_TRUE(comesBefore("a99999999999999999999", "a100000000000000000000"));
}

TEST_F(Inputs, TakeADocumentFromFileStandardInputAndPipe) {
    const std::string document =
        runTool({"list", directory_ / "b1.tif", directory_ / "b2.tif"}).out;
    fakes::writeFile(directory_ / "set", document);
    std::string utf16 = "\xFF\xFE";
    for (const char c : document) {
        utf16 += {c, '\0'};
    }
    fakes::writeFile(directory_ / "utf16.xml", utf16);
    const auto expected = ElementsAre("b1.tif#0", "b2.tif#0");
    EXPECT_THAT(named({directory_ / "set"}), expected);
    EXPECT_THAT(named({directory_ / "utf16.xml"}), expected);
    EXPECT_THAT(named({"-"}, "\xEF\xBB\xBF \n" + document), expected);
    const std::string other = directory_ / "b10.tif";
    EXPECT_THAT(named({other, directory_ / "set"}),
                ElementsAre("b10.tif#0", "b1.tif#0", "b2.tif#0"));
    EXPECT_THAT(named({directory_ / "set", "-"}, other + "\n" + (directory_ / "utf16.xml")),
                ElementsAre("b1.tif#0", "b2.tif#0", "b10.tif#0", "b1.tif#0", "b2.tif#0"));
    fakes::writeFile(directory_ / "MTL.xml", "<product/>");
    EXPECT_THAT(named({other, directory_ / "MTL.xml"}), ElementsAre("b10.tif#0", "MTL.xml#0"));
    const std::string pipe = directory_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { fakes::writeFile(pipe, document); });
    EXPECT_THAT(named({pipe}), expected);
    writer.join();
}

TEST_F(Inputs, FailInOneLineThatNamesTheFileAndTheReason) {
    std::filesystem::create_directory(directory_ / "empty");
    fakes::writeFile(directory_ / "text.xml", "no markup");
    fakes::writeFile(directory_ / "other.xml", "<a><b/></a>");
    fakes::writeFile(directory_ / "text.txt", "text");
    fakes::writeFile(directory_ / "b.tif.gz", "\x1F\x8B");
    fakes::writeFile(directory_ / "blank.tif", "");
    const std::string good = directory_ / "b1.tif";
    struct Case {
        Strings arguments;
        int code;
        std::string file;
        std::string reason;
    };
    const Case cases[] = {
        {{directory_ / "none.tif"}, 3, "none.tif", "No such file or directory"},
        {{good, directory_ / "none.tif#1"}, 3, "none.tif", "No such file or directory"},
        {{directory_ / "none\n.tif"}, 3, "none\\n.tif", "No such file or directory"},
        {{"@" + (directory_ / "none.txt")}, 3, "none.txt", "No such file or directory"},
        {{"@" + (directory_ / "blank.tif")}, 3, "blank.tif", "the list names no files"},
        {{directory_ / "empty"}, 3, "empty", "the directory holds no raster files"},
        {{directory_ / "text.xml"}, 3, "text.xml", "not an XML document"},
        {{directory_ / "other.xml"}, 3, "other.xml", "the document lists no components"},
        {{good, directory_ / "text.txt"}, 3, "text.txt", "no known raster format"},
        {{good, directory_ / "b.tif.gz"}, 3, "b.tif.gz", "compressed with gzip; unpack it"},
        {{good, directory_ / "blank.tif"}, 3, "blank.tif", "the file is empty"},
        {{good}, 1, "b1.tif", "a set needs at least two bands"},
        {{good, good + "#4"}, 1, "b1.tif", "there is no frame 4"},
        {{good + "#99999999999"}, 2, "b1.tif", "the frame number is out of range"},
    };
    for (const Case& each : cases) {
        const Outcome outcome = runTool(joined({"info"}, each.arguments));
        EXPECT_EQ(outcome.code, each.code) << each.file;
        EXPECT_EQ(outcome.err, "kestms: " + (directory_ / each.file) + ": " + each.reason + "\n");
        EXPECT_EQ(outcome.out, "");
    }
}

TEST(CommandLine, AnswersWrongUsageWithCodeTwo) {
    const std::pair<Strings, std::string> cases[] = {
        {{}, "A subcommand is required"},
        {{"frobnicate", "x"}, "frobnicate: no such command (see"},
        {{"ifno", "x"}, "ifno: no such command; did you mean info?"},
        {{"--quite"}, "--quite: no such option (see"},
        {{"help", "exprot"}, "exprot: no such command; did you mean export?"},
        {{"info"}, "is required"},
        {{"info", "--bogus", "x"}, "--bogus"},
        {{"export", "--compress", "jpeg", "x", "-o", "x"}, "jpeg"},
        {{"info", "x", "--language", "tlh"}, "there are de, en, es, fr, ja"},
    };
    for (const auto& [arguments, reason] : cases) {
        const Outcome outcome = runTool(arguments);
        EXPECT_EQ(outcome.code, 2);
        EXPECT_THAT(outcome.err, testing::AllOf(StartsWith("kestms: "), HasSubstr(reason)));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
    }
}

/// Standard input that has no end.
class EndlessBuffer : public std::streambuf {
  public:
    std::size_t bytes() const { return bytes_; }

  private:
    int_type underflow() override {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
        bytes_ += text_.size();
        return traits_type::to_int_type(text_.front());
    }

    std::string text_ = std::string(65535, 'a') + "\n";
    std::size_t bytes_ = 0;
};

TEST(CommandLine, RefusesListsWithoutAnEnd) {
    const Outcome zeros = runTool({"info", "@/dev/zero"});
    EXPECT_EQ(zeros.code, 3);
    EXPECT_EQ(zeros.err, "kestms: /dev/zero: not a text file\n");
    EndlessBuffer buffer;
    const Outcome endless = runAsTheUser({"info", "-"}, std::istream(&buffer));
    EXPECT_EQ(endless.code, 3);
    EXPECT_EQ(endless.err, "kestms: standard input: too long for a list of files\n");
    EXPECT_LE(buffer.bytes(), 65U << 20U);
}

/// Standard input on which the user waits, and then interrupts.
class InterruptingBuffer : public std::streambuf {
    int_type underflow() override {
        std::raise(SIGINT);
        return traits_type::eof();
    }
};

TEST(CommandLine, StopsWhenInterrupted) {
    const fakes::TempDirectory directory;
    const std::string output = directory / "set.xml";
    InterruptingBuffer buffer;
    const Outcome outcome = runAsTheUser({"list", "-", "-o", output}, std::istream(&buffer));
    EXPECT_EQ(outcome.code, 130);
    EXPECT_EQ(outcome.err, "kestms: interrupted\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST_F(Inputs, DoNotHelpWhenTheOutputIsLost) {
    for (const Strings& arguments :
         {joined({"info"}, writeLandsat(directory_)), {"--help"}, {"--version"}}) {
        const Outcome outcome = runAsTheUser(arguments, std::istringstream(), false);
        EXPECT_EQ(outcome.code, 4);
        EXPECT_EQ(outcome.err, "kestms: standard output: write failed\n");
    }
}

TEST(CommandLine, ShowsHelpWithExamplesForEveryCommand) {
    const Outcome all = runTool({"--help"});
    for (const char* name : {"list", "check", "info", "vrt", "export", "quicklook", "samples"}) {
        const Outcome outcome = runTool({name, "--help"});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_THAT(outcome.out, HasSubstr(std::string("Examples:\n  kestms ") + name));
        EXPECT_THAT(all.out, HasSubstr(std::string("\n  ") + name));
        EXPECT_EQ(runTool({"help", name}).out, outcome.out);
    }
    EXPECT_EQ(runTool({"help"}).out, all.out);
    EXPECT_EQ(runTool({"-V"}).out, runTool({"--version"}).out);
}

}  // namespace
}  // namespace kestms
