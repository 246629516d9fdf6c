#include "tool/raster/OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

/// Unlike any name in use: the process, and a number of its own.
fs::path temporaryName(const fs::path& target) {
    static std::atomic<int> counter = 0;
    const std::string name = "." + target.stem().string() + ".kestms-" + std::to_string(getpid()) +
                             "-" + std::to_string(counter++) + "~" + target.extension().string();
    return target.parent_path() / name;
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : given_(path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status)) {
        fail(reasonOf(EISDIR));
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        fail("not a regular file");
    }
    fs::path target = fs::weakly_canonical(fs::absolute(path, error), error);
    if (error || !target.has_filename()) {
        fail(reasonOf(error ? error.value() : EISDIR));
    }
    const fs::path temporary = temporaryName(target);
    const int descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        fail(reasonOf(errno));
    }
    close(descriptor);
    target_ = target.string();
    temporary_ = temporary.string();
}

OutputFile::~OutputFile() {
    const fs::path temporary = temporary_;
    const std::string prefix = temporary.filename().string();
    std::error_code error;
    fs::directory_iterator entries(temporary.parent_path(), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (entries->path().filename().string().starts_with(prefix)) {
            std::error_code ignored;
            fs::remove(entries->path(), ignored);
        }
    }
}

void OutputFile::write(std::string_view content) {
    std::ofstream file(temporary_, std::ios::binary | std::ios::trunc);
    errno = 0;
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        fail(errno != 0 ? reasonOf(errno) : "write failed");
    }
}

void OutputFile::commit() {
    throwIfInterrupted();
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) {
        fail(error.message());
    }
}

void OutputFile::fail(const std::string& reason) const {
    throw Failure(ExitCode::CannotWrite, given_, reason);
}

}  // namespace kestms
