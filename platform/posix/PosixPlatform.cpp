#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/Platform.h"
#include "platform/posix/PathText.h"
#include "platform/posix/RegularFile.h"

namespace kest::platform {
namespace {

class PosixPlainFile : public PlainFile {
  public:
    explicit PosixPlainFile(RegularFile file) : file_(std::move(file)) {}

    std::uint32_t size() override { return static_cast<std::uint32_t>(file_.size()); }
    std::uint32_t readFromStart(void* buffer, std::uint32_t count) override {
        return static_cast<std::uint32_t>(file_.readFromStart(buffer, count));
    }

  private:
    RegularFile file_;
};

}  // namespace

PathName splitPathName(std::u16string_view path) {
    const std::u16string_view last = path.substr(path.rfind(u'/') + 1);
    const std::size_t dot = std::min(last.rfind(u'.'), last.size());
    return {std::u16string(last.substr(0, std::min(dot, kMaxNamePart))),
            std::u16string(last.substr(dot, kMaxNamePart))};
}

ModuleVersion moduleVersion(const char16_t* /*moduleFileName*/) {
    return {KEST_VERSION_MAJOR, KEST_VERSION_MINOR, KEST_VERSION_BUILD};
}

std::unique_ptr<PlainFile> PlainFile::open(const std::u16string& path) {
    auto file = RegularFile::open(pathBytes(path));
    return file ? std::make_unique<PosixPlainFile>(std::move(*file)) : nullptr;
}

int compareMultibyte(const unsigned char* left, const unsigned char* right) {
    return std::strcmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
}

}  // namespace kest::platform
