#include <algorithm>
#include <utility>

#include "platform/Platform.h"
#include "platform/posix/RegularFile.h"
#include "platform/posix/StringTable.h"

namespace kest::platform {
namespace {

/// Far above any language's texts; keeps a wrong file name from filling the memory.
constexpr std::uint64_t kMaxFileSize = 4U << 20U;

class TextFileModule final : public StringModule {
  public:
    explicit TextFileModule(StringTable texts) : texts_(std::move(texts)) {}

    int loadString(unsigned int id, char16_t* buffer, int capacity) const override {
        if (buffer == nullptr || capacity <= 0) {
            return 0;
        }
        const auto found = texts_.find(id);
        const std::size_t length =
            found == texts_.end()
                ? 0
                : std::min(found->second.size(), static_cast<std::size_t>(capacity) - 1);
        if (length > 0) {
            found->second.copy(buffer, length);
        }
        buffer[length] = u'\0';
        return static_cast<int>(length);
    }

  private:
    StringTable texts_;
};

}  // namespace

std::unique_ptr<StringModule> StringModule::load(const std::u16string& path) {
    const std::optional<RegularFile> file = RegularFile::open(path);
    // Asked once: the file may grow meanwhile.
    const std::uint64_t size = file ? file->size() : 0;
    if (!file || size > kMaxFileSize) {
        return nullptr;
    }
    std::string content(static_cast<std::size_t>(size), '\0');
    content.resize(file->readFromStart(content.data(), content.size()));
    return std::make_unique<TextFileModule>(parseStringTable(content));
}

}  // namespace kest::platform
