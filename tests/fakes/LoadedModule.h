#pragma once

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace fakes {

/// A module as a host loads it; unloaded with the object.
class LoadedModule {
  public:
#if defined(_WIN32)
    explicit LoadedModule(const char* path) : handle_(LoadLibraryA(path)) {}
    ~LoadedModule() {
        FreeLibrary(handle_);
    }
    void* symbol(const char* name) const {
        return reinterpret_cast<void*>(GetProcAddress(handle_, name));
    }
#else
    explicit LoadedModule(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}
    ~LoadedModule() {
        dlclose(handle_);
    }
    void* symbol(const char* name) const {
        return dlsym(handle_, name);
    }
#endif
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    bool isLoaded() const {
        return handle_ != nullptr;
    }

  private:
#if defined(_WIN32)
    HMODULE handle_;
#else
    void* handle_;
#endif
};

}  // namespace fakes
