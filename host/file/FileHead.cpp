#include "host/file/FileHead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "host/file/WorldFile.h"

namespace Pyxis {
namespace {

std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileState stateOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
            nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

FileState stateOf(const std::string& path) {
    struct stat status {};
    return path.empty() || stat(path.c_str(), &status) != 0 ? FileState() : stateOf(status);
}

/// Why what is opened is no file to read; empty when it is one.
std::string notRegular(int descriptor, FileHead& head) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return std::strerror(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return "is a directory";
    }
    head.state = stateOf(status);
    return S_ISREG(status.st_mode) ? "" : "not a regular file";
}

}  // namespace

bool FileStamp::settled() const {
    using std::chrono::nanoseconds;
    using namespace std::chrono_literals;
    const bool wholeSeconds = file.modified % 1'000'000'000 == 0;
    const nanoseconds tick = wholeSeconds ? nanoseconds(3s) : nanoseconds(50ms);
    const nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    return now - nanoseconds(std::max(file.modified, file.changed)) > tick;
}

FileStamp stampOf(const std::string& path, bool withWorldFiles) {
    FileStamp stamp{stateOf(path), {}};
    for (const std::string& name :
         withWorldFiles ? worldFilesOf(path) : std::vector<std::string>()) {
        stamp.worldFiles.push_back(stateOf(name));
    }
    return stamp;
}

std::string absolutePath(const std::string& path) {
    std::error_code none;
    return path.empty() || path.front() == '/' ? path
                                               : std::filesystem::absolute(path, none).string();
}

std::optional<FileHead> readHead(const std::string& path, std::string& why) {
    if (path.empty()) {
        why = "no file name";
        return std::nullopt;
    }
    if (path.rfind("/vsi", 0) == 0) {
        why = "not a plain file";
        return std::nullopt;
    }
    // A pipe or device must not block before it is known to be one.
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    std::optional<FileHead> head(std::in_place);
    why = notRegular(descriptor, *head);
    if (why.empty()) {
        head->bytes.resize(FileHead::kBytes);
        const ssize_t got = pread(descriptor, head->bytes.data(), head->bytes.size(), 0);
        head->bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    } else {
        head.reset();
    }
    close(descriptor);
    return head;
}

}  // namespace Pyxis
