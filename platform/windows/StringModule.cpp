#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {

struct StringModule::Texts {
    explicit Texts(const Pyxis::StringBuffer& path)
        : module(LoadLibraryExW(wide(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) {}
    Texts(const Texts&) = delete;
    Texts& operator=(const Texts&) = delete;
    ~Texts() {
        if (module != nullptr) {
            FreeLibrary(module);
        }
    }

    HMODULE module;
};

StringModule::StringModule(std::unique_ptr<Texts> texts) : texts_(std::move(texts)) {}
StringModule::StringModule(StringModule&& other) noexcept = default;
StringModule::~StringModule() = default;

std::optional<StringModule> StringModule::load(const Pyxis::StringBuffer& path) {
    auto texts = std::make_unique<Texts>(path);
    return texts->module != nullptr ? std::optional(StringModule(std::move(texts))) : std::nullopt;
}

int StringModule::loadString(unsigned int id, char16_t* buffer, int capacity) const {
    if (capacity <= 0) {
        return 0;  // LoadStringW would return a pointer into the module
    }
    std::vector<wchar_t> text(static_cast<std::size_t>(capacity));
    const int length = LoadStringW(texts_->module, id, text.data(), capacity);
    std::copy_n(text.begin(), length, buffer);
    buffer[length] = u'\0';
    return length;
}

}  // namespace kest::platform
