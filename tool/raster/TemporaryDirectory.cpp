#include "tool/raster/TemporaryDirectory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr std::string_view kPrefix = ".kestms-";

/// The process that made a directory, from its name: the prefix, the process and a number. 0 for
/// other names.
pid_t makerOf(const std::string& name) {
    if (!name.starts_with(kPrefix)) {
        return 0;
    }
    const char* const end = name.data() + name.size();
    pid_t process = 0;
    const auto [dash, noProcess] = std::from_chars(name.data() + kPrefix.size(), end, process);
    if (noProcess != std::errc() || process <= 0 || dash == end || *dash != '-') {
        return 0;
    }
    unsigned number = 0;
    const auto [rest, noNumber] = std::from_chars(dash + 1, end, number);
    return noNumber == std::errc() && rest == end ? process : 0;
}

struct Registry {
    std::mutex mutex;
    std::set<fs::path> paths;
    int created = 0;
};

Registry& registry() {
    // Never destroyed: the thread that handles an interrupt may outlive static objects.
    static auto* const instance = new Registry;
    return *instance;
}

/// Whether a directory is as this program makes it: the user's alone, with nothing but files in it.
bool isAsMade(const fs::path& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        (status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) != S_IRWXU || status.st_uid != geteuid()) {
        return false;
    }
    std::error_code error;
    fs::directory_iterator entries(path, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!fs::is_regular_file(entries->symlink_status(error))) {
            return false;
        }
    }
    return !error;
}

bool isAbandoned(const fs::path& path) {
    const pid_t maker = makerOf(path.filename().string());
    return maker > 0 && kill(maker, 0) != 0 && errno == ESRCH && isAsMade(path);
}

/// The descriptor that holds the lock; -1 while another process has it, or on failure.
int lockDirectory(const fs::path& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

void removeAbandoned(const fs::path& parent, const InputFiles& inputs) {
    std::error_code error;
    fs::directory_iterator entries(parent, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!isAbandoned(entries->path()) || inputs.areIn(entries->path())) {
            continue;
        }
        const int lock = lockDirectory(entries->path());
        if (lock >= 0) {
            std::error_code ignored;
            fs::remove_all(entries->path(), ignored);
            close(lock);
        }
    }
}

/// Removes the files of a directory through its open descriptor: there may be no other left.
void emptyAndClose(int directory) {
    DIR* const entries = fdopendir(directory);
    if (entries == nullptr) {
        close(directory);
        return;
    }
    while (const dirent* entry = readdir(entries)) {
        unlinkat(directory, entry->d_name, 0);
    }
    closedir(entries);
}

bool isThere(const fs::path& path, int descriptor) {
    struct stat named {};
    struct stat held {};
    return fstat(descriptor, &held) == 0 && lstat(path.c_str(), &named) == 0 &&
           named.st_ino == held.st_ino && named.st_dev == held.st_dev;
}

}  // namespace

TemporaryDirectory::TemporaryDirectory(const fs::path& parent, const InputFiles& inputs) {
    removeAbandoned(parent, inputs);
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    // Another process may consider the directory abandoned before it is locked.
    constexpr int kTries = 100;
    for (int i = 0; i < kTries && lock_ < 0; ++i) {
        path_ = parent / (std::string(kPrefix) + std::to_string(getpid()) + "-" +
                          std::to_string(all.created++));
        if (mkdir(path_.c_str(), S_IRWXU) != 0) {
            if (errno == EEXIST) {
                continue;
            }
            throw std::system_error(errno, std::generic_category());
        }
        all.paths.insert(path_);
        lock_ = lockDirectory(path_);
        if (lock_ < 0 && errno == ENOTSUP) {
            return;  // a file system without locks
        }
        if (lock_ < 0 && (errno == EMFILE || errno == ENFILE)) {
            const int error = errno;
            rmdir(path_.c_str());
            all.paths.erase(path_);
            throw std::system_error(error, std::generic_category());
        }
        if (lock_ >= 0 && !isThere(path_, lock_)) {
            close(lock_);
            lock_ = -1;
        }
    }
    if (lock_ < 0) {
        throw std::system_error(EBUSY, std::generic_category());
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    if (lock_ >= 0) {
        emptyAndClose(lock_);
    }
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    all.paths.erase(path_);
}

void TemporaryDirectory::removeAll() {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    for (const fs::path& path : all.paths) {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
}

TemporaryDirectory::CommitLock::CommitLock() {
    registry().mutex.lock();
}

TemporaryDirectory::CommitLock::~CommitLock() {
    registry().mutex.unlock();
}

}  // namespace kestms
