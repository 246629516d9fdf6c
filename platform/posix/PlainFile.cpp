#include <utility>

#include "platform/Platform.h"
#include "platform/posix/RegularFile.h"

namespace kest::platform {
namespace {

class PosixPlainFile final : public PlainFile {
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

// There are no share modes here: whoever writes the file meanwhile is not kept out.
std::unique_ptr<PlainFile> PlainFile::open(const std::u16string& path) {
    std::optional<RegularFile> file = RegularFile::open(path);
    return file ? std::make_unique<PosixPlainFile>(std::move(*file)) : nullptr;
}

}  // namespace kest::platform
