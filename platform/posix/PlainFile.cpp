#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Platform.h"

namespace kest::platform {
namespace {

int descriptorOf(std::intptr_t handle) {
    return static_cast<int>(handle);
}

}  // namespace

// There are no share modes here: others may write the file meanwhile.
std::optional<PlainFile> PlainFile::open(const Pyxis::StringBuffer& path) {
    Pyxis::StringBuffer bytes;
    Pyxis::StringBuffer::convertString(path, bytes, Pyxis::CharacterType::Narrow);
    // Without O_NONBLOCK opening a pipe would wait for its writer, before we can check its type.
    PlainFile file(::open(reinterpret_cast<const char*>(bytes.data()),
                          O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (file.handle_ == kNoHandle || ::fstat(descriptorOf(file.handle_), &status) != 0 ||
        !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return file;
}

PlainFile::~PlainFile() {
    if (handle_ != kNoHandle) {
        ::close(descriptorOf(handle_));
    }
}

std::uint64_t PlainFile::size() const {
    struct stat status {};
    return ::fstat(descriptorOf(handle_), &status) == 0 ? static_cast<std::uint64_t>(status.st_size)
                                                        : 0;
}

std::uint32_t PlainFile::readFromStart(void* buffer, std::uint32_t count) const {
    std::uint32_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptorOf(handle_), static_cast<char*>(buffer) + done,
                                    count - done, static_cast<off_t>(done));
        if (got > 0) {
            done += static_cast<std::uint32_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

}  // namespace kest::platform
