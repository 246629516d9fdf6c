#include "tool/raster/OutputFile.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/fakes/Paths.h"
#include "tests/tool/Process.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using fakes::namesIn;
using testing::AllOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Not;

const InputFiles kNoInputs;
const OutputRules kOverwrite{kNoInputs, true};

using Files = std::vector<std::unique_ptr<OutputFile>>;

Files filesOf(const Strings& paths) {
    Files files;
    for (const std::string& path : paths) {
        files.push_back(std::make_unique<OutputFile>(path, kOverwrite));
        files.back()->write("new");
    }
    return files;
}

TEST(OutputFile, ReplacesWhatALinkLeadsToAndItsSideFilesAndKeepsThePermissions) {
    const fakes::TempDirectory directory;
    for (const char* name : {"old.tif", "old.tif.aux.xml", "old.tif.ovr", "old.tif.OVR"}) {
        fakes::writeFile(directory / name, "old");
    }
    fs::create_symlink("old.tif", directory / "link.tif");
    chmod((directory / "old.tif").c_str(), 0640);
    {
        const Files files = filesOf({directory / "link.tif"});
        EXPECT_EQ(fs::path(files[0]->temporaryPath()).filename(), "old.tif");
        fakes::writeFile(files[0]->temporaryPath() + ".aux.xml", "beside");
        commitTogether(files);
    }
    EXPECT_THAT(namesIn(directory), ElementsAre("link.tif", "old.tif", "old.tif.aux.xml"));
    EXPECT_TRUE(fs::is_symlink(directory / "link.tif"));
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "new");
    EXPECT_EQ(fakes::readFile(directory / "old.tif.aux.xml"), "beside");
    EXPECT_EQ(fs::status(directory / "old.tif").permissions(), fs::perms(0640));
    chmod((directory / "old.tif").c_str(), 0440);
    EXPECT_THROW(filesOf({directory / "old.tif"}), Failure);
}

TEST(OutputFile, NothingOfAnInputIsReplaced) {
    const fakes::TempDirectory directory;
    InputFiles inputs;
    for (const char* name : {"in.tif", "out.tif.msk"}) {
        fakes::writeRaster(directory / name);
        inputs.addRaster(directory / name);
    }
    fakes::writeFile(directory / "other.tif.ovr", "old");
    for (const char* refused : {"in.tif", "in.tif.aux.xml", "out.tif", "out.tif.msk"}) {
        EXPECT_THROW(OutputFile(directory / refused, {inputs, true}), Failure) << refused;
    }
    EXPECT_THROW(OutputFile(directory / "other.tif", {inputs, false}), Failure);
    writeOutput(directory / "other.tif", {inputs, true}, "new");
    EXPECT_THAT(namesIn(directory), ElementsAre("in.tif", "other.tif", "out.tif.msk"));
}

TEST(OutputFile, OutputsAppearTogetherOrNotAtAll) {
    const fakes::TempDirectory directory;
    fakes::writeFile(directory / "old.tif", "old");
    fakes::writeFile(directory / "old.tif.ovr", "old");
    const auto before = namesIn(directory);
    {
        const Files files =
            filesOf({directory / "old.tif", directory / "a.tif", directory / "b.tif"});
        fs::create_directory(directory / "b.tif");  // too late to be seen before
        EXPECT_THROW(commitTogether(files), Failure);
        fs::remove(directory / "b.tif");
    }
    EXPECT_EQ(namesIn(directory), before);
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "old");
    const Files files = filesOf({directory / "old.tif", directory / "a.tif"});
    commitTogether(files);
    EXPECT_EQ(fakes::readFile(directory / "old.tif"), "new");
}

TEST(OutputFile, WhatAppearsWhileItIsWrittenStays) {
    const fakes::TempDirectory directory;
    for (const char* ending : {"", ".msk"}) {
        Files files;
        files.push_back(std::make_unique<OutputFile>(directory / "out", OutputRules{kNoInputs}));
        files.front()->write("new");
        fakes::writeFile(directory / "out" + ending, "of another");
        EXPECT_THROW(commitTogether(files), Failure) << ending;
        files.clear();
        EXPECT_THAT(namesIn(directory), ElementsAre(std::string("out") + ending));
        EXPECT_EQ(fakes::readFile(directory / "out" + ending), "of another");
        fs::remove(directory / "out" + ending);
    }
    fs::create_symlink("nowhere", directory / "link");
    EXPECT_THROW(OutputFile(directory / "link", {kNoInputs, false}), Failure);
}

TEST(OutputFile, ALaterRunClearsWhatADeadProcessLeft) {
    const fakes::TempDirectory directory;
    const auto child = fork();
    if (child == 0) {
        const Files files = filesOf({directory / "out.tif"});
        _exit(0);  // as a crash would, without destructors
    }
    waitpid(child, nullptr, 0);
    ASSERT_EQ(namesIn(directory).size(), 1U);
    const Strings users = {".kestms-mine", ".kestms-2024",        ".kestms--",
                           ".kestms-1-",   ".kestms-999999999-1", ".kestms-999999999-2"};
    for (const std::string& name : users) {
        fs::create_directory(directory / name);
        fakes::writeFile(directory / (name + "/kept"), "user's");
    }
    const Files alive = filesOf({directory / "out.tif"});
    const Files second = filesOf({directory / "other.tif"});
    chmod((directory / users.back()).c_str(), 0700);
    InputFiles inputs;
    inputs.addRaster(directory / (users.back() + "/kept"));
    const OutputFile third(directory / "third.tif", {inputs, false});
    EXPECT_EQ(fakes::readFile(alive[0]->temporaryPath()), "new");
    EXPECT_EQ(namesIn(directory).size(), 3U + users.size());
    for (const std::string& name : users) {
        EXPECT_EQ(fakes::readFile(directory / (name + "/kept")), "user's");
    }
}

/// What limits a process before it starts.
auto limitedTo(decltype(RLIMIT_FSIZE) what, rlim_t most) {
    return [what, most] {
        const rlimit limit{most, most};
        setrlimit(what, &limit);
    };
}

/// A set whose export takes some time.
class WritingProcess : public InDirectory {
  protected:
    WritingProcess() {
        for (const char* name : {"a_01.tif", "a_02.tif"}) {
            files_.push_back(write(name, {.width = 3000, .height = 3000, .type = GDT_UInt16}));
        }
        before_ = namesIn(directory_);
    }

    Strings command() const {
        return joined({fakes::kTool, "export", "-o", directory_ / "out.tif"}, files_);
    }
    void awaitOutput() const {
        while (namesIn(directory_) == before_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    Strings files_;
    Strings before_;
};

TEST_F(WritingProcess, LeavesNothingBehindWhenItIsToldToStop) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        Process process(command());
        awaitOutput();
        process.signal(number);
        process.signal(number);  // as people do
        const Outcome outcome = process.wait();
        EXPECT_EQ(outcome.code, 130) << number;
        EXPECT_EQ(outcome.err, "kestms: interrupted\n");
        EXPECT_EQ(namesIn(directory_), before_);
    }
}

TEST_F(WritingProcess, HeedsLimitsAndSignalsThatItsParentIgnores) {
    const auto limit = limitedTo(RLIMIT_FSIZE, 100000);
    const Outcome full = Process(command(), limit).wait();
    EXPECT_EQ(full.code, 4) << full.err;
    EXPECT_THAT(full.err, HasSubstr("out.tif: "));
    EXPECT_EQ(namesIn(directory_), before_);
    const Outcome samples = runKestms({"samples", directory_ / "new/samples"}, limit);
    EXPECT_EQ(samples.code, 4);
    EXPECT_THAT(samples.err, AllOf(HasSubstr("new/samples"), Not(HasSubstr(".kestms-"))));
    EXPECT_EQ(namesIn(directory_), before_);
    Process background(command(), [] { signal(SIGINT, SIG_IGN); });
    awaitOutput();
    background.signal(SIGINT);
    EXPECT_EQ(background.wait().code, 0);
}

TEST_F(WritingProcess, MistakesNoMessageForAnInterrupt) {
    // Of a file that is given twice.
    Process process(joined(command(), {files_[0], "--resolution", "15", "--resampling", "cubic"}),
                    [] {
                        close(STDOUT_FILENO);
                        close(STDERR_FILENO);
                    });
    EXPECT_EQ(process.wait().code, 4) << "the name that it wrote cannot be printed";
    EXPECT_TRUE(fs::exists(directory_ / "out.tif"));
}

TEST_F(WritingProcess, KeepsWhatItWroteWhenNobodyReadsItsMessages) {
    fakes::writeFile(directory_ / "out.qml", "of a user, which is worth a message");
    Process process(command(), [] {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
    });
    EXPECT_EQ(process.wait().code, -SIGPIPE);
    EXPECT_THAT(namesIn(directory_), ElementsAre("a_01.tif", "a_02.tif", "out.qml", "out.tif"));
}

TEST(StarvedProcess, NeverWritesFewerBands) {
    const fakes::TempDirectory directory;
    Strings files;
    for (int i = 10; i < 40; ++i) {
        files.push_back(fakes::writeRaster(directory / ("b_" + std::to_string(i) + ".tif")));
    }
    const std::string output = directory / "out.tif";
    for (rlim_t descriptors = 6; descriptors < 48; descriptors += 2) {
        const Outcome outcome = runKestms(joined({"export", "-o", output, "--overwrite"}, files),
                                          limitedTo(RLIMIT_NOFILE, descriptors));
        if (outcome.err.find("memory cannot be printed") != std::string::npos) {
            continue;  // a sanitizer needs a pipe to inspect objects, and none is left
        }
        if (outcome.code == 0) {
            EXPECT_EQ(gdalInfo(output)["bands"].size(), files.size()) << descriptors;
        }
        EXPECT_EQ(outcome.err.find("busy"), std::string::npos) << outcome.err;
        EXPECT_FALSE(namesIn(directory).front().starts_with(".kestms"))
            << descriptors << ": " << outcome.code << " " << outcome.err;
    }
}

/// Limits the processes and threads of another user.
TEST(StarvedProcess, DoesWithoutThreads) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    const fakes::TempDirectory directory;
    const Strings files = {fakes::writeRaster(directory / "a_01.tif", {.width = 600}),
                           fakes::writeRaster(directory / "a_02.tif", {.width = 600})};
    chmod(directory.path().c_str(), 0777);
    for (const Strings& command : {Strings{"export"}, {"export", "--cog", "--overwrite"}}) {
        const Outcome outcome =
            runKestms(joined(joined(command, {"-o", directory / "out.tif"}), files), [] {
                limitedTo(RLIMIT_NPROC, 2)();
                alarm(60);
                EXPECT_EQ(setuid(54321), 0);
            });
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(QuietProcess, ShowsNothingThatGdalPrints) {
    const fakes::TempDirectory directory;
    Strings files;
    for (const char* name : {"a_01.tif", "a_02.tif"}) {
        files.push_back(fakes::writeRaster(directory / name, {.bands = 2}));
        // GDAL warns of channels that no tag (338, EXTRASAMPLES) declares.
        std::string bytes = fakes::readFile(files.back());
        const std::size_t tag = bytes.find(std::string("\x52\x01\x03\x00", 4));
        ASSERT_NE(tag, std::string::npos);
        fakes::writeFile(files.back(), bytes.replace(tag, 2, "\x5C\x01"));
    }
    for (const auto& [command, output] : {std::pair("vrt", "out.vrt"),
                                          {"export", "out.tif"},
                                          {"quicklook", "out.png"},
                                          {"list", "out.xml"}}) {
        const Outcome outcome = runKestms(joined({command, "-o", directory / output}, files));
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_THAT(outcome.err, Not(HasSubstr("Warning"))) << command;
        EXPECT_EQ(outcome.out, directory / output + "\n");
    }
}

/// Whatever it waits for: here a pipe without a writer.
TEST(InterruptedProcess, EndsAtOnce) {
    const fakes::TempDirectory directory;
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    for (const bool opened : {false, true}) {
        Process process({fakes::kTool, "info", directory / "pipe"});
        const int writer = opened ? open((directory / "pipe").c_str(), O_WRONLY | O_CLOEXEC) : -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        process.awaitHandler(SIGTERM);
        process.signal(SIGTERM);
        EXPECT_EQ(process.wait().code, 130);
        close(writer);
    }
}

}  // namespace
}  // namespace kestms
