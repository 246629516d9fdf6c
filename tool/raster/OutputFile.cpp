#include "tool/raster/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr mode_t kAnyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;

std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

/// Renames files, and undoes that unless all renames succeed.
class Renaming {
  public:
    Renaming() = default;
    Renaming(const Renaming&) = delete;
    Renaming& operator=(const Renaming&) = delete;
    ~Renaming() {
        for (; !steps_.empty(); steps_.pop_back()) {
            const Step& step = steps_.back();
            if (step.previous.empty()) {
                unlink(step.target.c_str());
            } else {
                std::rename(step.previous.c_str(), step.target.c_str());
            }
        }
    }

    /// Puts a file in its place, or nothing where `from` is empty. What was there is kept as
    /// `previous` until the end. Throws std::system_error.
    void replace(const fs::path& from, const fs::path& target, const fs::path& previous) {
        if (fs::is_directory(target)) {
            throw std::system_error(EISDIR, std::generic_category());
        }
        // A link leaves the name in place until the new file takes it; not every file system has
        // them.
        if ((!from.empty() && link(target.c_str(), previous.c_str()) == 0) ||
            std::rename(target.c_str(), previous.c_str()) == 0) {
            steps_.push_back({target, previous});
            check(from.empty() ? 0 : std::rename(from.c_str(), target.c_str()));
        } else if (errno == ENOENT) {
            add(from, target);
        } else {
            check(-1);
        }
    }

    /// Puts a file in its place, where another program may have put one meanwhile. Throws
    /// std::system_error then; also where `from` is empty.
    void add(const fs::path& from, const fs::path& target) {
        if (fs::exists(fs::symlink_status(target))) {
            throw std::system_error(EEXIST, std::generic_category());
        }
        if (!from.empty()) {
            int result =
                renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
            if (result != 0 && errno == EINVAL) {  // not every file system knows the flag
                result = std::rename(from.c_str(), target.c_str());
            }
            check(result);
            steps_.push_back({target, {}});
        }
    }

    void keep() { steps_.clear(); }

  private:
    static void check(int result) {
        if (result != 0) {
            throw std::system_error(errno, std::generic_category());
        }
    }

    struct Step {
        fs::path target;
        fs::path previous;  ///< empty if there was none
    };

    std::vector<Step> steps_;
};

}  // namespace

OutputFile::OutputFile(const std::string& path, const OutputRules& rules)
    : given_(path), mayReplace_(rules.overwrite) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status)) {
        fail(reasonOf(EISDIR));
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        fail("not a regular file");
    }
    const fs::path target = fs::weakly_canonical(fs::absolute(path, error), error);
    if (error || !target.has_filename()) {
        fail(reasonOf(error ? error.value() : EISDIR));
    }
    rules.inputs.refuseOutput(path, rules.overwrite);
    for (const char* const ending : kSideFileEndings) {
        rules.inputs.refuseSideFile(target.string() + ending, rules.overwrite);
    }
    struct stat existing {};
    if (stat(target.c_str(), &existing) == 0 &&
        ((existing.st_mode & kAnyoneWrites) == 0 || access(target.c_str(), W_OK) != 0)) {
        fail(reasonOf(EACCES));
    }
    try {
        directory_ = std::make_unique<TemporaryDirectory>(target.parent_path(), rules.inputs);
    } catch (const std::system_error& why) {
        fail(reasonOf(why.code().value()));
    }
    target_ = target.string();
    temporary_ = (directory_->path() / target.filename()).string();
}

void OutputFile::write(std::string_view content) {
    errno = 0;
    std::ofstream file(temporary_, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        fail(errno != 0 ? reasonOf(errno) : "write failed");
    }
}

std::string OutputFile::withGivenName(std::string words) const {
    for (std::size_t at = 0; !temporary_.empty() && (at = words.find(temporary_, at)) != words.npos;
         at += given_.size()) {
        words.replace(at, temporary_.size(), given_);
    }
    return words;
}

void OutputFile::fail(const std::string& reason) const {
    throw Failure(ExitCode::CannotWrite, given_,
                  reason.empty() ? "write failed" : withGivenName(reason));
}

void commitTogether(const std::vector<std::unique_ptr<OutputFile>>& files) {
    throwIfInterrupted();
    const TemporaryDirectory::CommitLock lock;
    Renaming renaming;
    for (const auto& file : files) {
        const auto put = [&](const std::string& from, const char* ending) {
            const std::string target = file->target_ + ending;
            if (file->mayReplace_) {
                renaming.replace(from, target,
                                 file->directory_->path() / (std::string("previous") + ending));
            } else {
                renaming.add(from, target);
            }
        };
        struct stat existing {};
        if (stat(file->target_.c_str(), &existing) == 0) {
            chmod(file->temporary_.c_str(), existing.st_mode & kPermissions);
        }
        try {
            // Those that are there are wrong for the new file.
            for (const char* const ending : kSideFileEndings) {
                const std::string written = file->temporary_ + ending;
                const bool isWritten = access(written.c_str(), F_OK) == 0;
                put(isWritten ? written : "", ending);
            }
            put(file->isRemoved_ ? "" : file->temporary_, "");
        } catch (const std::system_error& why) {
            file->fail(reasonOf(why.code().value()));
        }
    }
    renaming.keep();
}

void writeOutput(const std::string& path, const OutputRules& rules, std::string_view content) {
    std::vector<std::unique_ptr<OutputFile>> files;
    files.push_back(std::make_unique<OutputFile>(path, rules));
    files.front()->write(content);
    commitTogether(files);
}

}  // namespace kestms
