#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tool/raster/TemporaryDirectory.h"
#include "tool/scene/InputFiles.h"

namespace kestms {

/// What an output may replace: never an input, and another existing file only on request.
struct OutputRules {
    const InputFiles& inputs;
    bool overwrite = false;
};

/// A file being written. It grows in a temporary directory beside its path and takes its name only
/// with `commitTogether`; without that nothing is left behind and a file that was there before
/// stays as it was.
class OutputFile {
  public:
    /// Throws a Failure: ExitCode::Usage when the rules forbid the output, ExitCode::CannotWrite
    /// when there can be no file of that path or a read-only one is there.
    OutputFile(const std::string& path, const OutputRules& rules);

    /// The name under which to write, for writers that go by name; its file name is that of the
    /// path. What they put beside it under names that begin with it becomes part of the output.
    const std::string& temporaryPath() const { return temporary_; }
    /// As the user wrote it.
    const std::string& path() const { return given_; }

    /// Replaces the content. Throws a Failure with ExitCode::CannotWrite.
    void write(std::string_view content);

    /// Lets `commitTogether` remove what is there instead.
    void remove() { isRemoved_ = true; }

    /// A message of such a writer, with the path in place of the name under which it wrote.
    std::string withGivenName(std::string words) const;

    /// A Failure with ExitCode::CannotWrite that names the path, for writers that go by name. An
    /// empty reason is one that they do not know.
    [[noreturn]] void fail(const std::string& reason) const;

  private:
    friend void commitTogether(const std::vector<std::unique_ptr<OutputFile>>& files);

    std::string given_;
    std::string target_;  ///< with links resolved
    std::unique_ptr<TemporaryDirectory> directory_;
    std::string temporary_;
    bool mayReplace_ = false;
    bool isRemoved_ = false;
};

/// Gives the files their names, all or none. Existing files keep their permissions, and those that
/// have appeared meanwhile stay unless the rules let them be overwritten. Throws a
/// Failure with ExitCode::CannotWrite, and one with ExitCode::Interrupted when the user has
/// interrupted the command.
void commitTogether(const std::vector<std::unique_ptr<OutputFile>>& files);

/// Writes one file in one step.
void writeOutput(const std::string& path, const OutputRules& rules, std::string_view content);

}  // namespace kestms
