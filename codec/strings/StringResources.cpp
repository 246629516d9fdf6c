#include "codec/strings/StringResources.h"

#include <memory>
#include <string>
#include <vector>

#include "codec/strings/BufferText.h"
#include "platform/Platform.h"

namespace kest {
namespace {

constexpr int kFirstCapacity = 256;

/// What the whole process shares.
struct Resources {
    Pyxis::FileSpecifier file;
    std::unique_ptr<platform::StringModule> module;
};

Resources& resources() {
    static Resources shared;
    return shared;
}

/// The module in use, loaded now if need be; null when there is none to load.
const platform::StringModule* loadedModule() {
    Resources& shared = resources();
    if (!shared.module && !shared.file.string().isZero()) {
        shared.module = platform::StringModule::load(wideText(shared.file.string()));
    }
    return shared.module.get();
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
        static constexpr unsigned char kTerminator[2] = {0, 0};
        text.set(2, kTerminator, Pyxis::StringBuffer::defaultCharacterType());
        return false;
    }
    std::vector<char16_t> buffer(kFirstCapacity);
    // A loader that copies at most the capacity less one never asks for more room; one that
    // answers the whole length would.
    while (module->loadString(id, buffer.data(), static_cast<int>(buffer.size())) >=
           static_cast<int>(buffer.size())) {
        buffer.resize(2 * buffer.size());
    }
    text = wideBuffer(buffer.data());
    return true;
}

}  // namespace kest
