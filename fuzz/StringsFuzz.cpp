// The string-resource file: parsed, written, and parsed again; then loaded as the plug-in loads it,
// and every text requested.

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "codec/strings/StringResources.h"
#include "fuzz/Input.h"
#include "fuzz/Texts.h"
#include "platform/Platform.h"
#include "platform/posix/StringTable.h"

namespace {

using fuzz::require;
using kest::platform::StringTable;

/// An unnamed regular file, refilled by every run.
class ScratchFile {
  public:
    ScratchFile() : descriptor_(::memfd_create("fuzz", MFD_CLOEXEC)) {}
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() { ::close(descriptor_); }

    void fill(std::string_view content) const {
        require(::ftruncate(descriptor_, 0) == 0 &&
                    ::pwrite(descriptor_, content.data(), content.size(), 0) ==
                        static_cast<ssize_t>(content.size()),
                "the scratch file takes its content");
    }
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  private:
    int descriptor_;
};

std::string fileOf(const StringTable& table) {
    std::string file;
    for (const auto& [id, text] : table) {
        file += std::to_string(id) + '\t';
        for (const char c : Pyxis::wideToUtf8(text)) {
            file += c == '\n' ? "\\n" : c == '\t' ? "\\t" : c == '\\' ? "\\\\" : std::string(1, c);
        }
        file += "\r\n";
    }
    return file;
}

bool isWellFormed(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isHigh = (text[i] & 0xFC00) == 0xD800;
        if (isHigh && (i + 1 == text.size() || (text[i + 1] & 0xFC00) != 0xDC00)) {
            return false;
        }
        i += isHigh ? 1 : 0;
        if (!isHigh && (text[i] & 0xFC00) == 0xDC00) {
            return false;
        }
    }
    return true;
}

void checkModule(const StringTable& table, const std::string& path) {
    const auto module = kest::platform::StringModule::load(Pyxis::toWideBuffer(path));
    require(module.has_value(), "a small regular file is a module");
    kest::setResourceFileName(Pyxis::fileSpecifier(path));
    for (const auto& [id, text] : table) {
        char16_t buffer[8];
        for (const std::size_t capacity : {1U, 2U, 8U}) {
            const int copied = module->loadString(id, buffer, static_cast<int>(capacity));
            const std::u16string_view part = std::u16string_view(text).substr(0, capacity - 1);
            require(std::u16string_view(buffer, static_cast<std::size_t>(copied)) == part &&
                        buffer[copied] == u'\0',
                    "a text is cut to the buffer");
        }
        require(module->loadString(id, buffer, 0) == 0, "no room, no text");
        Pyxis::StringBuffer loaded;
        require(kest::loadResourceString(id, loaded), "a text of the module is loaded");
        const std::u16string shown = text.substr(0, std::min<std::size_t>(text.find(u'\0'), 255));
        require(fuzz::wellFormed(loaded) == shown, "a loaded text is the module's");
    }
    kest::setResourceFileName({});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ScratchFile scratch;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const StringTable table = kest::platform::parseStringTable(file);
    for (const auto& [id, text] : table) {
        require(id <= 0xFFFF, "ids have 16 bits");
        require(isWellFormed(text), "texts are well-formed");
    }
    require(kest::platform::parseStringTable(fileOf(table)) == table, "texts can be written");
    scratch.fill(file);
    checkModule(table, scratch.path());
    return 0;
}
