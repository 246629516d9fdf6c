#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include "codec/strings/StringResources.h"
#include "host/Text.h"
#include "tests/fakes/Paths.h"

namespace fakes {

/// Path of the string-resource module of a language, or of "numbers", in which every text tells
/// its own number.
inline std::string stringModule(std::string_view language) {
#if defined(KEST_STRING_MODULES)
    return std::string(KEST_STRING_MODULES) + "/kestmultispectral-" + std::string(language) +
           ".dll";
#else
    const std::string folder =
        language == "numbers" ? kResources + std::string("/../tests/fakes") : kResources;
    return folder + "/kestmultispectral-" + std::string(language) + ".txt";
#endif
}

/// Texts come from the module at `path` while it lives; no module is named before and after.
class TextsFrom {
  public:
    explicit TextsFrom(std::string_view path) {
        kest::setResourceFileName(Pyxis::fileSpecifier(path));
    }
    TextsFrom(const TextsFrom&) = delete;
    TextsFrom& operator=(const TextsFrom&) = delete;
    ~TextsFrom() { kest::setResourceFileName({}); }
};

inline std::string text(unsigned int id) {
    Pyxis::StringBuffer buffer;
    kest::loadResourceString(id, buffer);
    return Pyxis::toUtf8(buffer);
}

/// A file private to this test run; removed with the object.
class TempFile {
  public:
    TempFile(const std::string& name, std::string_view content)
        : path_((std::filesystem::temp_directory_path() /
                 ("kest-test-" + name + std::to_string(std::random_device()())))
                    .string()) {
        std::ofstream(path_, std::ios::binary) << content;
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace fakes
