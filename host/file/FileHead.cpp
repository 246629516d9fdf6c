#include "host/file/FileHead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>

#include "host/file/AuxiliaryFile.h"
#include "host/file/PathPolicy.h"
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

/// Where the archive's own path begins: "/vsizip/a.zip/..." or "/vsizip/{a.zip}/...", in which GDAL
/// looks for the matching brace.
std::size_t startOfArchive(const std::string& path) {
    const std::size_t afterPrefix = path.find('/', 1) + 1;
    return afterPrefix + (path[afterPrefix] == '{' ? 1 : 0);
}

std::atomic<VirtualHeadReader> virtualHeadReader{nullptr};

/// A file descriptor, closed on destruction.
class Descriptor {
  public:
    /// A pipe or device must not block before it is known to be one.
    explicit Descriptor(const std::string& path)
        : number_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    int number() const { return number_; }

  private:
    int number_;
};

}  // namespace

bool FileStamp::settled() const {
    using std::chrono::nanoseconds;
    using namespace std::chrono_literals;
    const bool wholeSeconds = file.modified % 1'000'000'000 == 0;
    const nanoseconds tick = wholeSeconds ? nanoseconds(3s) : nanoseconds(50ms);
    const nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    return now - nanoseconds(std::max(file.modified, file.changed)) > tick;
}

FileState stateOf(const std::string& path) {
    if (kindOf(path) != PathKind::Plain) {
        const Expected<FileHead> head = readHead(path, 0);
        return head ? head->state : FileState();
    }
    struct stat status {};
    return path.empty() || stat(path.c_str(), &status) != 0 ? FileState() : stateOf(status);
}

FileStamp stampOf(const std::string& path, bool withWorldFiles) {
    FileStamp stamp{stateOf(path), stateOf(auxiliaryFileOf(path)), {}};
    for (const std::string& name :
         withWorldFiles ? worldFilesOf(path) : std::vector<std::string>()) {
        stamp.worldFiles.push_back(stateOf(name));
    }
    return stamp;
}

std::string absolutePath(const std::string& path) {
    const auto absolute = [](const std::string& plain) {
        std::array<char, PATH_MAX> directory{};
        const bool isRelative = !plain.empty() && plain.front() != '/';
        return isRelative && getcwd(directory.data(), directory.size()) != nullptr
                   ? std::string(directory.data()) + "/" + plain
                   : plain;
    };
    if (kindOf(path) != PathKind::InArchive) {
        return absolute(path);
    }
    const std::size_t archive = startOfArchive(path);
    return path.substr(0, archive) + absolute(path.substr(archive));
}

std::string archiveOf(const std::string& path) {
    if (kindOf(path) != PathKind::InArchive) {
        return {};
    }
    const std::size_t start = startOfArchive(path);
    std::size_t end = start;
    if (path[start - 1] == '{') {
        for (int depth = 1; end < path.size(); ++end) {
            depth += path[end] == '{' ? 1 : path[end] == '}' ? -1 : 0;
            if (depth == 0) {
                break;
            }
        }
        return path.substr(start, end - start);
    }
    while ((end = path.find('/', end + 1)) != path.npos && end - start < PATH_MAX) {
        std::string part = path.substr(start, end - start);
        struct stat status {};
        if (stat(part.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            return part;
        }
    }
    return path.substr(start);
}

void setVirtualHeadReader(VirtualHeadReader reader) {
    virtualHeadReader = reader;
}

Expected<FileHead> readHead(const std::string& path, std::size_t most) {
    if (path.empty()) {
        return unreadable("no file name");
    }
    if (kindOf(path) != PathKind::Plain) {
        const std::string_view why = whyNotAllowed(path);
        const VirtualHeadReader reader = virtualHeadReader;
        return !why.empty() || reader == nullptr
                   ? unreadable(std::string(why.empty() ? "not a plain file" : why))
                   : reader(path, most);
    }
    const Descriptor file(path);
    struct stat status {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0) {
        const int why = errno;
        return Refusal{
            why == EMFILE || why == ENFILE ? Refusal::Kind::Exhausted : Refusal::Kind::Unreadable,
            std::strerror(why)};
    }
    if (!S_ISREG(status.st_mode)) {
        return unreadable(S_ISDIR(status.st_mode) ? "is a directory" : "not a regular file");
    }
    const auto size = std::min<std::uint64_t>(
        most,
        std::max<std::uint64_t>(static_cast<std::uint64_t>(status.st_size), FileHead::kBytes));
    FileHead head{std::string(size, '\0'), stateOf(status)};
    const ssize_t got = pread(file.number(), head.bytes.data(), head.bytes.size(), 0);
    head.bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return head;
}

}  // namespace Pyxis
