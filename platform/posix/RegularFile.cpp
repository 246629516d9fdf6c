#include "platform/posix/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace kest::platform {

std::optional<RegularFile> RegularFile::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return std::nullopt;
    }
    RegularFile file(descriptor);
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return file;
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

RegularFile::~RegularFile() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

off_t RegularFile::size() const {
    return ::lseek(descriptor_, 0, SEEK_END);
}

std::size_t RegularFile::readFromStart(void* buffer, std::size_t count) const {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptor_, static_cast<char*>(buffer) + done, count - done,
                                    static_cast<off_t>(done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

}  // namespace kest::platform
