#include "codec/strings/StringResources.h"

#include <array>
#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Platform.h"

namespace kest {
namespace {

constexpr int kFirstCapacity = 256;

/// Where the texts come from, for the whole process.
struct Resources {
    Pyxis::FileSpecifier file;
    std::optional<platform::StringModule> module;
};

/// Never destroyed: a static object of the host may own a codec and destroy it after our statics,
/// and the codec's destructor releases the module.
Resources& resources() {
    alignas(Resources) static std::byte storage[sizeof(Resources)];
    static Resources& instance = *new (storage) Resources;
    return instance;
}

const platform::StringModule* loadedModule() {
    Resources& current = resources();
    if (!current.module && !current.file.string().isZero()) {
        if (auto loaded = platform::StringModule::load(current.file.string())) {
            current.module.emplace(std::move(*loaded));
        }
    }
    return current.module ? &*current.module : nullptr;
}

/// Fills the caller's buffer through its virtual operation: it may be of a derived class. The
/// terminator after `text` is copied too.
void fill(Pyxis::StringBuffer& buffer, std::u16string_view text, Pyxis::CharacterType type) {
    buffer.set(static_cast<int>((text.size() + 1) * sizeof(char16_t)),
               reinterpret_cast<const unsigned char*>(text.data()), type);
}

}  // namespace

void setResourceFileName(const Pyxis::FileSpecifier& file) {
    releaseResourceModule();
    resources().file.assign(file);
}

void releaseResourceModule() {
    resources().module.reset();
}

bool loadResourceString(unsigned int id, Pyxis::StringBuffer& text) {
    const platform::StringModule* module = loadedModule();
    if (module == nullptr) {
        fill(text, u"", Pyxis::StringBuffer::defaultCharacterType());
        return false;
    }
    // A module that cuts a text to the buffer ends the loop at once; another may return the full
    // length instead (compatibility.md, 27).
    std::array<char16_t, kFirstCapacity> usual{};
    if (module->loadString(id, usual.data(), kFirstCapacity) < kFirstCapacity) {
        fill(text, usual.data(), Pyxis::CharacterType::Wide);
        return true;
    }
    std::u16string buffer;
    int capacity = kFirstCapacity;
    do {
        capacity *= 2;
        buffer.assign(static_cast<std::size_t>(capacity), u'\0');
    } while (module->loadString(id, buffer.data(), capacity) >= capacity);
    fill(text, buffer.c_str(), Pyxis::CharacterType::Wide);
    return true;
}

}  // namespace kest
