#include "platform/posix/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/Utf.h"

namespace kest::platform {

std::optional<RegularFile> RegularFile::open(std::u16string_view path) {
    // Without O_NONBLOCK a pipe would keep us waiting for its writer before we can ask what it is.
    const int descriptor =
        ::open(pathBytes(path).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    RegularFile file(descriptor);
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return file;
}

RegularFile::~RegularFile() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::uint64_t RegularFile::size() const {
    struct stat status {};
    return ::fstat(descriptor_, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::size_t RegularFile::readFromStart(void* buffer, std::size_t count) const {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptor_, static_cast<char*>(buffer) + done, count - done,
                                    static_cast<off_t>(done));
        if (got > 0) {
            done += static_cast<std::size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

}  // namespace kest::platform
