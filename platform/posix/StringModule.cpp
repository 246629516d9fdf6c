#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/Platform.h"
#include "platform/posix/StringTable.h"

namespace kest::platform {
namespace {

/// Far more than the texts of any language; stops a wrong file name from filling the memory.
constexpr std::uint64_t kMaxFileSize = 4U << 20U;

}  // namespace

struct StringModule::Texts {
    StringTable table;
};

StringModule::StringModule(std::unique_ptr<Texts> texts) : texts_(std::move(texts)) {}
StringModule::StringModule(StringModule&& other) noexcept = default;
StringModule::~StringModule() = default;

std::optional<StringModule> StringModule::load(const Pyxis::StringBuffer& path) {
    const std::optional<PlainFile> file = PlainFile::open(path);
    // Read once: the file may grow meanwhile.
    const std::uint64_t size = file ? file->size() : 0;
    if (!file || size > kMaxFileSize) {
        return std::nullopt;
    }
    std::string content(static_cast<std::size_t>(size), '\0');
    content.resize(file->readFromStart(content.data(), static_cast<std::uint32_t>(size)));
    return StringModule(std::make_unique<Texts>(Texts{parseStringTable(content)}));
}

int StringModule::loadString(unsigned int id, char16_t* buffer, int capacity) const {
    if (buffer == nullptr || capacity <= 0) {
        return 0;
    }
    const auto found = texts_->table.find(id);
    const std::size_t length =
        found == texts_->table.end()
            ? 0
            : std::min(found->second.size(), static_cast<std::size_t>(capacity) - 1);
    if (length > 0) {
        found->second.copy(buffer, length);
    }
    buffer[length] = u'\0';
    return static_cast<int>(length);
}

}  // namespace kest::platform
