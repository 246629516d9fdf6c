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
        text = Pyxis::StringBuffer(2, Pyxis::StringBuffer::defaultCharacterType());
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
    text = wideBuffer(std::u16string_view(buffer.c_str()));
    return true;
}

}  // namespace kest
