#include <windows.h>

#include <utility>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {
namespace {

class HandleFile : public PlainFile {
  public:
    explicit HandleFile(const std::u16string& path)
        : file_(CreateFileW(wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_RANDOM_ACCESS,
                            nullptr)) {}
    HandleFile(const HandleFile&) = delete;
    HandleFile& operator=(const HandleFile&) = delete;
    ~HandleFile() override {
        if (isOpen()) {
            CloseHandle(file_);
        }
    }

    bool isOpen() const { return file_ != INVALID_HANDLE_VALUE; }
    bool isRegular() const { return GetFileType(file_) == FILE_TYPE_DISK; }

    std::uint32_t size() override { return SetFilePointer(file_, 0, nullptr, FILE_END); }

    std::uint32_t readFromStart(void* buffer, std::uint32_t count) override {
        DWORD read = 0;
        if (SetFilePointer(file_, 0, nullptr, FILE_BEGIN) != 0 ||
            ReadFile(file_, buffer, count, &read, nullptr) == 0) {
            return 0;
        }
        return read;
    }

  private:
    HANDLE file_;
};

}  // namespace

std::unique_ptr<PlainFile> PlainFile::open(const std::u16string& path) {
    auto file = std::make_unique<HandleFile>(path);
    return file->isOpen() && file->isRegular() ? std::move(file) : nullptr;
}

}  // namespace kest::platform
