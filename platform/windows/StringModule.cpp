#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {
namespace {

class ResourceModule : public StringModule {
  public:
    explicit ResourceModule(const std::u16string& path)
        : module_(LoadLibraryExW(wide(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) {}
    ResourceModule(const ResourceModule&) = delete;
    ResourceModule& operator=(const ResourceModule&) = delete;
    ~ResourceModule() override {
        if (isLoaded()) {
            FreeLibrary(module_);
        }
    }

    bool isLoaded() const { return module_ != nullptr; }

    int loadString(unsigned int id, char16_t* buffer, int capacity) const override {
        if (capacity <= 0) {
            return 0;  // the system would hand out a pointer into the module
        }
        std::vector<wchar_t> text(static_cast<std::size_t>(capacity));
        const int length = LoadStringW(module_, id, text.data(), capacity);
        std::copy_n(text.begin(), length, buffer);
        buffer[length] = u'\0';
        return length;
    }

  private:
    HMODULE module_;
};

}  // namespace

std::unique_ptr<StringModule> StringModule::load(const std::u16string& path) {
    auto module = std::make_unique<ResourceModule>(path);
    return module->isLoaded() ? std::move(module) : nullptr;
}

}  // namespace kest::platform
