#include "tool/scene/Resources.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr std::string_view kPrefix = "kestmultispectral-";
constexpr std::string_view kExtension = ".txt";
constexpr const char* kDefaultLanguage = "en";

/// The file of this code: the tool, or a module loaded by another program.
fs::path ownFile() {
    Dl_info info{};
    link_map* module = nullptr;
    const bool found = dladdr1(reinterpret_cast<void*>(&ownFile), &info,
                               reinterpret_cast<void**>(&module), RTLD_DL_LINKMAP) != 0;
    // The program itself has no name in this list.
    const bool loaded = found && module->l_name != nullptr && *module->l_name != '\0';
    std::error_code error;
    return fs::canonical(loaded ? module->l_name : "/proc/self/exe", error);
}

/// In a folder above that file, in an installed tree (wherever it is) as in a build tree. Empty if
/// there is none.
fs::path resourceDirectory() {
    std::error_code error;
    for (fs::path folder = ownFile(); folder.has_relative_path();) {
        folder = folder.parent_path();
        fs::path resources = folder / "share" / "kestms" / "resources";
        if (fs::is_directory(resources, error)) {
            return resources;
        }
    }
    return {};
}

}  // namespace

std::vector<std::string> availableLanguages() {
    std::vector<std::string> languages;
    std::error_code error;
    fs::directory_iterator entries(resourceDirectory(), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().string();
        if (name.starts_with(kPrefix) && name.ends_with(kExtension) &&
            name.size() > kPrefix.size() + kExtension.size()) {
            languages.push_back(
                name.substr(kPrefix.size(), name.size() - kPrefix.size() - kExtension.size()));
        }
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

std::string resourceFile(const std::string& language) {
    const auto available = availableLanguages();
    if (std::find(available.begin(), available.end(), language) == available.end()) {
        return {};
    }
    const std::string name = std::string(kPrefix) + language + std::string(kExtension);
    return (resourceDirectory() / name).string();
}

std::string catalogueFile() {
    std::error_code error;
    const fs::path file = resourceDirectory().parent_path() / "products" / "catalogue.xml";
    return fs::is_regular_file(file, error) ? file.string() : std::string();
}

std::string environmentLanguage() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        const std::string_view locale = value;
        const std::string language(locale.substr(0, locale.find_first_of("_.@")));
        return resourceFile(language).empty() ? kDefaultLanguage : language;
    }
    return kDefaultLanguage;
}

}  // namespace kestms
