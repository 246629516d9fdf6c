#include "tool/scene/Components.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "host/Text.h"
#include "host/codecs/Places.h"
#include "host/codecs/Readability.h"
#include "sets/ComponentList.h"
#include "sets/FindCodec.h"
#include "tool/terminal/Failure.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// For files of several bands together, as small files can claim many. Each band costs some
/// kilobytes; imaging spectrometers have some hundreds.
constexpr std::size_t kMostBands = 16384;

/// Options that allow what is refused by default.
struct Allowing {
    std::string_view reason;
    std::string_view name;
};
constexpr std::array<Allowing, 2> kAllowing = {{
    {Pyxis::kRemoteNotAllowed, "--allow-remote"},
    {Pyxis::kVirtualRasterNotAllowed, "--allow-vrt"},
}};

}  // namespace

void addFrames(const std::string& path, std::vector<Component>& components) {
    const auto image = openImage(path);
    const int frames = image ? std::max(image->getNumFrames(), 1) : 1;
    if (frames > 1 && components.size() + static_cast<std::size_t>(frames) > kMostBands) {
        throw Failure(
            ExitCode::Usage, path,
            "with this file the set has more than " + std::to_string(kMostBands) + " bands");
    }
    for (int frame = 0; frame < frames; ++frame) {
        components.push_back({path, frame});
    }
}

std::vector<Component> componentsIn(Context& context, const std::vector<std::string>& files) {
    context.session().readAhead(files);
    context.session().finishReadingAhead();
    std::vector<Component> components;
    for (const std::string& path : files) {
        addFrames(path, components);
    }
    return components;
}

std::vector<Component> componentsOf(const Pyxis::FileSpecifier& set) {
    const kest::ComponentList list(set);
    std::vector<Component> components(static_cast<std::size_t>(list.count()));
    for (int i = 0; i < list.count(); ++i) {
        Component& component = components[static_cast<std::size_t>(i)];
        if (const kest::Component* listed = list.get(i)) {
            component = {Pyxis::toUtf8(listed->file.string()), listed->frame};
        }
    }
    return components;
}

std::vector<std::string> filesOf(const std::string& path) {
    std::vector<std::string> files = {path};
    const auto image = openImage(path);
    for (int i = 1; image && i < image->getNumFiles(); ++i) {
        files.push_back(Pyxis::toUtf8(image->getFile(i).string()));
    }
    const std::vector<std::string> beside = Pyxis::namesBeside(path);
    std::copy_if(beside.begin(), beside.end(), std::back_inserter(files),
                 [](const std::string& file) {
                     std::error_code error;
                     return fs::is_regular_file(file, error);
                 });
    return files;
}

Pyxis::FileSpecifier setOf(const std::vector<Component>& components) {
    kest::ComponentListBuilder builder;
    for (const Component& component : components) {
        builder.append(Pyxis::fileSpecifier(component.path), component.frame);
    }
    return builder.specifier();
}

bool isDecodable(const std::string& path) {
    return kest::findCodec(Pyxis::fileSpecifier(path)) != nullptr;
}

std::unique_ptr<Pyxis::ReadImageFileInterface> openImage(const std::string& path) {
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(path);
    const Pyxis::ImageFormatCodec* codec = kest::findCodec(file);
    return std::unique_ptr<Pyxis::ReadImageFileInterface>(codec != nullptr ? codec->openImage(&file)
                                                                           : nullptr);
}

bool isVirtual(const std::string& path) {
    return Pyxis::kindOf(path) != Pyxis::PathKind::Plain;
}

std::string absoluteName(const std::string& path) {
    if (isVirtual(path)) {
        return Pyxis::absolutePath(path);
    }
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

std::string whyNotReadable(const std::string& path) {
    const std::string reason = Pyxis::whyNotReadable(Pyxis::fileSpecifier(path));
    const auto option =
        std::find_if(kAllowing.begin(), kAllowing.end(),
                     [&reason](const Allowing& each) { return each.reason == reason; });
    return option != kAllowing.end() ? reason + " (" + std::string(option->name) + " reads it)"
           : reason.empty()          ? "no codec reads it"
                                     : reason;
}

}  // namespace kestms
