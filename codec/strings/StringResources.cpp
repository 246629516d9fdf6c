#include "codec/strings/StringResources.h"

#include <memory>
#include <string>
#include <string_view>

#include "codec/strings/BufferText.h"
#include "platform/Platform.h"

namespace kest {
namespace {

constexpr int kFirstCapacity = 256;

// Made with the module, not on first use: a host's codec object may outlive a local static.
Pyxis::FileSpecifier resourceFile;
std::unique_ptr<platform::StringModule> resourceModule;

void loadModule() {
    if (!resourceFile.string().isZero()) {
        resourceModule = platform::StringModule::load(wideText(resourceFile.string()));
    }
}

/// The caller's buffer is filled through its own operation: it may be of a class that derives
/// from the host's. `text` ends before a terminator, which goes with it.
void fill(Pyxis::StringBuffer& buffer, std::u16string_view text, Pyxis::CharacterType type) {
    buffer.set(static_cast<int>((text.size() + 1) * sizeof(char16_t)),
               reinterpret_cast<const unsigned char*>(text.data()), type);
}

}  // namespace

void setResourceFileName(const Pyxis::FileSpecifier& file) {
    releaseResourceModule();
    resourceFile.assign(file);
}

void releaseResourceModule() {
    resourceModule.reset();
}

bool loadResourceString(unsigned int id, Pyxis::StringBuffer& text) {
    if (!resourceModule) {
        loadModule();
    }
    if (!resourceModule) {
        fill(text, u"", Pyxis::StringBuffer::defaultCharacterType());
        return false;
    }
    // The module cuts a text to the buffer, so the loop is left at once; another module might
    // answer the full length instead.
    std::u16string buffer(kFirstCapacity, u'\0');
    int capacity = kFirstCapacity;
    while (resourceModule->loadString(id, buffer.data(), capacity) >= capacity) {
        capacity *= 2;
        buffer.assign(static_cast<std::size_t>(capacity), u'\0');
    }
    fill(text, std::u16string_view(buffer.c_str()), Pyxis::CharacterType::Wide);
    return true;
}

}  // namespace kest
