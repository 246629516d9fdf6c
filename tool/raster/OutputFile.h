#pragma once

#include <string>
#include <string_view>

namespace kestms {

/// A file being written. It grows under a temporary name in the directory of its path and takes
/// its own name only with `commit`; without that nothing is left behind and a file that was there
/// before stays as it was.
class OutputFile {
  public:
    /// Creates the empty temporary file. Throws a Failure with ExitCode::CannotWrite when that is
    /// not possible, and when `path` names something other than a regular file.
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes the temporary file, and files that a writer put beside it under names that begin
    /// with its own, unless the output was committed.
    ~OutputFile();

    /// The name under which to write, for writers that go by name; it has the extension of the
    /// path.
    const std::string& temporaryPath() const { return temporary_; }

    /// Replaces the content. Throws a Failure with ExitCode::CannotWrite.
    void write(std::string_view content);

    /// Gives the file its name. Throws a Failure with ExitCode::CannotWrite, and one with
    /// ExitCode::Interrupted when the user has interrupted the command.
    void commit();

    /// A Failure with ExitCode::CannotWrite that names the path, for writers that go by name.
    [[noreturn]] void fail(const std::string& reason) const;

  private:
    std::string given_;   ///< as the user wrote it
    std::string target_;  ///< with links resolved
    std::string temporary_;
};

}  // namespace kestms
