#include "host/gdal/PrivateFiles.h"

#include <cpl_vsi.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>

#include "host/file/PathName.h"
#include "host/file/PathPolicy.h"
#include "host/gdal/ThreadOption.h"

namespace Pyxis {
namespace {

constexpr std::string_view kPrefix = "/vsipyxis/";

/// The visible files, by the number in their names: NUMBER/NAME. Never destroyed, as GDAL may use
/// them until the process ends.
struct VisibleFiles {
    std::mutex mutex;
    std::map<unsigned, std::vector<std::string>> files;
    unsigned next = 0;

    static VisibleFiles& instance() {
        static auto* const visible = new VisibleFiles;
        return *visible;
    }

    /// The real path of a name of GDAL's; empty when it may not see such a file.
    std::string find(std::string_view asked) {
        unsigned number = 0;
        const auto [end, error] =
            std::from_chars(asked.data(), asked.data() + asked.size(), number);
        const std::string_view name = asked.substr(static_cast<std::size_t>(end - asked.data()));
        const std::lock_guard<std::mutex> lock(mutex);
        const auto own = files.find(number);
        if (error != std::errc() || own == files.end() || !name.starts_with('/')) {
            return {};
        }
        const auto path =
            std::find_if(own->second.begin(), own->second.end(),
                         [name](const std::string& one) { return nameOf(one) == name.substr(1); });
        return path != own->second.end() ? *path : std::string();
    }
};

// Callbacks for GDAL. Names come without the prefix.

int statFile(void* /*user*/, const char* name, VSIStatBufL* status, int /*flags*/) {
    const std::string path = VisibleFiles::instance().find(name);
    return path.empty() ? -1 : VSIStatL(path.c_str(), status);
}

void* openFile(void* /*user*/, const char* name, const char* access) {
    const std::string_view asked = access;
    const std::string path = VisibleFiles::instance().find(name);
    const bool mayRead = asked.starts_with('r') && asked.find('+') == asked.npos && !path.empty();
    if (!mayRead) {
        return nullptr;
    }
    const ThreadOption noListing("GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR");
    return VSIFOpenL(path.c_str(), kindOf(path) == PathKind::Plain ? "rbe" : "rb");
}

VSILFILE* fileOf(void* file) {
    return static_cast<VSILFILE*>(file);
}

vsi_l_offset tellFile(void* file) {
    return VSIFTellL(fileOf(file));
}

int seekFile(void* file, vsi_l_offset offset, int whence) {
    return VSIFSeekL(fileOf(file), offset, whence);
}

std::size_t readFile(void* file, void* bytes, std::size_t size, std::size_t count) {
    return VSIFReadL(bytes, size, count, fileOf(file));
}

int isAtEnd(void* file) {
    return VSIFEofL(fileOf(file));
}

int closeFile(void* file) {
    return VSIFCloseL(fileOf(file));
}

void install() {
    VSIFilesystemPluginCallbacksStruct* calls = VSIAllocFilesystemPluginCallbacksStruct();
    calls->stat = statFile;
    calls->open = openFile;
    calls->tell = tellFile;
    calls->seek = seekFile;
    calls->read = readFile;
    calls->eof = isAtEnd;
    calls->close = closeFile;
    VSIInstallPluginHandler(kPrefix.data(), calls);
    VSIFreeFilesystemPluginCallbacksStruct(calls);
}

}  // namespace

PrivateFiles::PrivateFiles(std::vector<std::string> paths) {
    static std::once_flag once;
    std::call_once(once, install);
    VisibleFiles& visible = VisibleFiles::instance();
    const std::lock_guard<std::mutex> lock(visible.mutex);
    number_ = ++visible.next;
    visible.files.emplace(number_, std::move(paths));
}

PrivateFiles::~PrivateFiles() {
    VisibleFiles& visible = VisibleFiles::instance();
    const std::lock_guard<std::mutex> lock(visible.mutex);
    visible.files.erase(number_);
}

std::string PrivateFiles::name() const {
    VisibleFiles& visible = VisibleFiles::instance();
    const std::lock_guard<std::mutex> lock(visible.mutex);
    return std::string(kPrefix) + std::to_string(number_) + "/" +
           std::string(nameOf(visible.files.at(number_).front()));
}

std::string PrivateFiles::withoutNames(std::string message) {
    for (std::size_t at = message.find(kPrefix); at != message.npos; at = message.find(kPrefix)) {
        const std::size_t end = message.find('/', at + kPrefix.size());
        message.erase(at, (end == message.npos ? message.size() : end + 1) - at);
    }
    return message;
}

}  // namespace Pyxis
