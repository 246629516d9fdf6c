// A host whose registry is a static object and owns the codec. The registry is made before the
// plug-in's own statics and so destroyed after them. Argument: a string-resource file.

#include <cstdio>
#include <memory>
#include <vector>

#include "codec/KestMultispectralCodec.h"
#include "host/Text.h"

#if defined(KEST_MODULE)
#include <dlfcn.h>
#endif

namespace {

using Registry = std::vector<std::unique_ptr<const Pyxis::ImageFormatCodec>>;
__attribute__((init_priority(101))) Registry registry(1);

#if defined(KEST_MODULE)
/// The member function of that mangled name in the loaded module, with the object first.
template <typename... Arguments>
auto loaded(const char* name) {
    static void* const module = dlopen(KEST_MODULE, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        std::puts(dlerror());
    }
    return reinterpret_cast<void (*)(Arguments...)>(dlsym(module, name));
}

KestMultispectralCodec* makeCodec(const Pyxis::FileSpecifier& texts) {
    void* memory = operator new(sizeof(KestMultispectralCodec));
    loaded<void*>("_ZN22KestMultispectralCodecC1Ev")(memory);
    loaded<void*, const Pyxis::FileSpecifier&>(
        "_ZN22KestMultispectralCodec19setResourceFileNameERKN5Pyxis13FileSpecifierE")(memory,
                                                                                      texts);
    return static_cast<KestMultispectralCodec*>(memory);
}
#else
KestMultispectralCodec* makeCodec(const Pyxis::FileSpecifier& texts) {
    auto* codec = new KestMultispectralCodec;
    codec->setResourceFileName(texts);
    return codec;
}
#endif

}  // namespace

int main(int /*argc*/, char** argv) {
    registry.front().reset(makeCodec(Pyxis::fileSpecifier(argv[1])));
    Pyxis::StringBuffer name;
    registry.front()->getFormatName(name);
    std::puts(Pyxis::toUtf8(name).c_str());
    return name.isZero() ? 1 : 0;
}
