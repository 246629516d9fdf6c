#include "host/raster/Module.h"

#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <string>

#include "host/file/PathName.h"

namespace Pyxis {
namespace {

/// The path relative to this code, so that an installed tree can be moved.
std::string besideThis(const char* library) {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&besideThis), &info) == 0 || info.dli_fname == nullptr) {
        return library;
    }
    return folderOf(info.dli_fname) + library;
}

}  // namespace

Expected<void*> functionIn(const char* library, const char* function) {
    // Never closed: its objects may live as long as the process. Lazy, as the symbols of GDAL's own
    // dependencies take milliseconds to resolve; our modules are linked with "-z now", so that one
    // that lacks a symbol is refused here.
    void* const module = dlopen(besideThis(library).c_str(), RTLD_LAZY | RTLD_LOCAL);
    void* const found = module != nullptr ? dlsym(module, function) : nullptr;
    if (found == nullptr) {
        const char* const reason = dlerror();
        return unreadable(reason != nullptr ? reason : library);
    }
    return found;
}

unsigned long long numberOfLoads() {
    unsigned long long number = 0;
    const auto first = [](dl_phdr_info* module, std::size_t /*size*/, void* to) {
        *static_cast<unsigned long long*>(to) = module->dlpi_adds;
        return 1;
    };
    dl_iterate_phdr(first, &number);
    return number;
}

bool isLoaded(const char* library) {
    void* const module = dlopen(besideThis(library).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (module != nullptr) {
        dlclose(module);  // only undoes the count of dlopen
    }
    return module != nullptr;
}

}  // namespace Pyxis
