#include "tool/scene/Inputs.h"

#include <glob.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "codec/strings/BufferText.h"
#include "host/Text.h"
#include "host/codecs/Places.h"
#include "host/codecs/Readability.h"
#include "sets/ComponentList.h"
#include "tool/scene/InputText.h"
#include "tool/scene/RasterDirectory.h"
#include "tool/scene/Scenes.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr const char* kStandardInput = "standard input";

bool exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

/// Splits "FILE#FRAME"; nothing when the argument does not end in "#" and digits.
std::optional<Component> withFrame(const std::string& argument) {
    const std::size_t mark = argument.rfind('#');
    if (mark == std::string::npos || mark == 0 || mark + 1 == argument.size() ||
        argument.find_first_not_of("0123456789", mark + 1) != std::string::npos) {
        return std::nullopt;
    }
    Component component{argument.substr(0, mark), 0};
    const char* end = argument.data() + argument.size();
    if (std::from_chars(argument.data() + mark + 1, end, component.frame).ec != std::errc()) {
        throw Failure(ExitCode::Usage, component.path, "the frame number is out of range");
    }
    return component;
}

/// A line of a list up to "#" at its start or after a blank; "FILE#FRAME" has none.
std::string withoutComment(const std::string& line) {
    constexpr std::string_view kBlanks = " \t";
    std::size_t end = line.find('#');
    while (end != std::string::npos && end != 0 &&
           kBlanks.find(line[end - 1]) == std::string_view::npos) {
        end = line.find('#', end + 1);
    }
    if (end == std::string::npos) {
        return line;
    }
    return line.substr(0, line.substr(0, end).find_last_not_of(kBlanks) + 1);
}

/// Why a text is not a component list; null when it is one.
const char* documentFault(const std::string& text, const Pyxis::FileSpecifier& document) {
    return !looksLikeXml(text)                    ? "not an XML document"
           : kest::countComponents(document) == 0 ? "the document lists no components"
                                                  : nullptr;
}

bool mayBeDocument(const std::string& path, const fs::file_status& status) {
    const std::string extension = fs::path(path).extension().string();
    // A shell's process substitution can be read only once.
    return fs::is_fifo(status) ||
           (fs::is_regular_file(status) &&
            (extension == ".xml" || extension == ".XML" ||
             (!Pyxis::isNamedLikeRaster(path) && fileMayListComponents(path))));
}

std::vector<std::string> pathsOf(const std::vector<SetAside>& files) {
    std::vector<std::string> paths;
    std::transform(files.begin(), files.end(), std::back_inserter(paths),
                   [](const SetAside& file) { return file.path; });
    return paths;
}

bool liesDirectlyIn(const Scene& scene, const std::string& folder) {
    const std::string inside = insideOf(folder);
    const fs::path place = inside.empty() ? folder : inside;
    const fs::path parent = fs::path(scene.files.front()).parent_path();
    return (parent / "").lexically_normal() == (place / "").lexically_normal();
}

/// GDAL's name for an address on the network; any other argument unchanged.
std::string withoutScheme(const std::string& argument) {
    constexpr std::array<std::string_view, 3> kSchemes = {"https://", "http://", "ftp://"};
    return std::any_of(kSchemes.begin(), kSchemes.end(),
                       [&argument](auto scheme) { return argument.starts_with(scheme); })
               ? "/vsicurl/" + argument
               : argument;
}

/// The files of a pattern that the shell did not expand, in natural order; empty for other words.
std::vector<std::string> filesMatching(const std::string& pattern) {
    std::vector<std::string> files;
    glob_t found{};
    if (pattern.find_first_of("*?[") != std::string::npos &&
        glob(pattern.c_str(), GLOB_NOSORT, nullptr, &found) == 0) {
        for (std::size_t i = 0; i < found.gl_pathc; ++i) {
            if (isPlaceToLook(found.gl_pathv[i])) {
                const auto below = rasterFilesBelow(found.gl_pathv[i]);
                files.insert(files.end(), below.begin(), below.end());
            } else {
                files.emplace_back(found.gl_pathv[i]);
            }
        }
        globfree(&found);
    }
    std::sort(files.begin(), files.end(), comesBefore);
    return files;
}

/// The rasters at a path of `kestms scenes`.
std::vector<std::string> rastersAt(const std::string& path) {
    if (isPlaceToLook(path)) {
        return rasterFilesBelow(path);
    }
    std::vector<std::string> files =
        exists(path) || isVirtual(path) ? std::vector<std::string>{path} : filesMatching(path);
    if (files.empty()) {
        throw Failure(ExitCode::CannotRead, path, whyNotReadable(path));
    }
    return files;
}

/// Turns arguments into a set.
class ArgumentReader {
  public:
    ArgumentReader(Context& context, MissingFile missing, bool oneArgument)
        : context_(context), missing_(missing), oneArgument_(oneArgument) {}

    void readArgument(const std::string& given) {
        const std::string argument = withoutScheme(given);
        if (Pyxis::kindOfPath(argument) == Pyxis::PathKind::Remote) {
            const auto component = withFrame(argument);
            context_.nameRemote(component ? component->path : argument);
        }
        if (argument == "-") {
            readText(kestms::readText(context_.in, kStandardInput), kStandardInput);
        } else if (argument.starts_with('@') && !exists(argument)) {
            const std::string path = argument.substr(1);
            context_.inputs.add(path);
            readText(readTextFile(path), path);
        } else {
            readEntry(argument);
        }
    }

    Pyxis::FileSpecifier set() {
        sortNamedFiles();
        std::vector<std::string> files;
        for (const Entry& entry : entries_) {
            context_.inputs.addRaster(entry.path);
            files.push_back(entry.path);
        }
        context_.session().readAhead(files);
        // A document by itself is used unchanged.
        if (document_) {
            return *document_;
        }
        const std::vector<Component> all = components();
        warnOfRepetition(all);
        return setOf(all);
    }

  private:
    struct Entry {
        std::string path;
        std::optional<int> frame = {};  ///< none: all
        bool isNamed = false;           ///< as a whole file, by itself
    };

    void readText(const std::string& text, const std::string& name) {
        if (looksLikeXml(text)) {
            readDocument(text, name);
            return;
        }
        const auto before = entries_.size();
        for (const std::string& line : linesOf(text)) {
            const std::string entry = exists(line) ? line : withoutComment(line);
            if (!entry.empty()) {
                readEntry(entry);
            }
        }
        if (entries_.size() == before) {
            throw Failure(ExitCode::CannotRead, name, "the list names no files");
        }
    }

    void readEntry(const std::string& entry) {
        throwIfInterrupted();
        std::error_code error;
        const fs::file_status status = fs::status(entry, error);
        if (isPlaceToLook(entry)) {
            context_.inputs.add(entry);
            takeFolder(entry);
        } else if (fs::exists(status)) {
            readFile(entry, status);
        } else if (const auto matches = filesMatching(entry); !matches.empty()) {
            takeGlob(entry, matches);
        } else if (const auto component = withFrame(entry)) {
            failIfMissing(component->path);
            add({component->path, component->frame});
        } else {
            failIfMissing(entry);
            add({entry});
        }
    }

    /// Adds the one scene in a folder, or the one of several that the user chose.
    void takeFolder(const std::string& folder) {
        takeScene(folder, scenesAmong(context_.session(), rasterFilesBelow(folder)),
                  [&folder](const Scene& scene) { return liesDirectlyIn(scene, folder); });
    }

    /// The same for a glob; files of no product need not share a folder.
    void takeGlob(const std::string& pattern, const std::vector<std::string>& files) {
        const std::vector<Scene> scenes = scenesAmong(context_.session(), files);
        if (scenes.front().product.empty()) {
            for (const std::string& path : files) {
                add({path});
            }
        } else {
            takeScene(pattern, scenes, [](const Scene&) { return false; });
        }
    }

    /// Scenes of products come first, then rasters for which `isNear` holds, then all others.
    template <typename IsNear>
    void takeScene(const std::string& name, const std::vector<Scene>& scenes, IsNear isNear) {
        std::vector<Scene> choice;
        const auto choose = [&](auto wanted) {
            if (choice.empty()) {
                std::copy_if(scenes.begin(), scenes.end(), std::back_inserter(choice), wanted);
            }
        };
        choose([](const Scene& scene) { return !scene.product.empty(); });
        choose(isNear);
        choose([](const Scene&) { return true; });
        if (!context_.scene.empty()) {
            choice = {sceneNamed(scenes, context_.scene)};
        }
        if (choice.size() > 1) {
            throw Failure(ExitCode::Usage, name,
                          "holds " + std::to_string(choice.size()) +
                              " scenes; choose one with --scene NAME: " + sceneNames(choice));
        }
        const Scene& scene = choice.front();
        if (scene.files.empty() && !context_.withQuality) {
            throw Failure(ExitCode::NotDecodable, name,
                          "holds no bands, but " + summaryOf(scene.setAside));
        }
        for (const std::string& path : scene.files) {
            add({path});
        }
        setAside(name, scene.setAside);
    }

    /// Files named one by one, perhaps expanded from a glob by the shell: sets layers aside, and
    /// warns about likely accidents.
    void sortNamedFiles() {
        std::vector<std::string> paths;
        for (const Entry& entry : entries_) {
            if (entry.isNamed) {
                paths.push_back(entry.path);
            }
        }
        const std::vector<Scene> scenes = scenesAmong(context_.session(), paths);
        if (scenes.empty() || scenes.front().product.empty()) {
            return;
        }
        const Scene* chosen =
            context_.scene.empty() ? nullptr : &sceneNamed(scenes, context_.scene);
        std::vector<std::string> names;
        for (const Scene& scene : scenes) {
            if (chosen != nullptr && &scene != chosen) {
                dropNamed(scene.files);
                dropNamed(pathsOf(scene.setAside));
                continue;
            }
            names.push_back(scene.name);
            sortScene(scene);
        }
        if (names.size() > 1) {
            context_.note("files of " + std::to_string(names.size()) +
                          " scenes are given: " + sceneNames(scenes));
        }
    }

    void sortScene(const Scene& scene) {
        std::vector<SetAside> aside;
        for (const SetAside& each : scene.setAside) {
            if (each.reason == kPartOfNoScene) {
                context_.warn(each.path, "is part of no scene, but " + scene.name + " is one");
            } else {
                aside.push_back(each);
            }
        }
        dropNamed(pathsOf(aside));
        setAside(scene.name, aside);
    }

    void dropNamed(const std::vector<std::string>& files) {
        const std::set<std::string> dropped(files.begin(), files.end());
        std::erase_if(entries_, [&dropped](const Entry& entry) {
            return entry.isNamed && dropped.count(entry.path) > 0;
        });
    }

    /// Reports in one line what is left out, unless the user includes it.
    void setAside(const std::string& name, const std::vector<SetAside>& files) {
        std::vector<SetAside> left;
        bool hasLayers = false;
        for (const SetAside& each : files) {
            hasLayers = hasLayers || each.isLayer;
            if (each.isLayer && context_.withQuality) {
                context_.layers.insert(each.path);
                add({each.path});
            } else {
                context_.inputs.addRaster(each.path);
                const bool isListed = each.isLayer && context_.listsLayers;
                (isListed ? context_.layersAside : left).push_back(each);
            }
        }
        if (!left.empty()) {
            const bool canTake = hasLayers && !context_.withQuality;
            context_.warn(name, "set aside: " + summaryOf(left) +
                                    (canTake ? " (--with-quality takes what fits)" : ""));
        }
    }

    void readFile(const std::string& path, const fs::file_status& status) {
        if (mayBeDocument(path, status)) {
            context_.inputs.add(path);
            readDocument(readTextFile(path), path);
        } else {
            add({path, {}, true});
        }
    }

    void readDocument(const std::string& text, const std::string& name) {
        const Pyxis::FileSpecifier document(kest::narrowBuffer(text),
                                            Pyxis::FileSpecifier::Type::Compound);
        if (const char* fault = documentFault(text, document); fault == nullptr) {
            takeDocument(document);
        } else if (oneArgument_) {
            throw Failure(ExitCode::CannotRead, name, fault);
        } else {
            // A glob also matches a product's XML files.
            add({name});
        }
    }

    void takeDocument(const Pyxis::FileSpecifier& document) {
        const bool alone = entries_.empty();
        for (const Component& component : componentsOf(document)) {
            entries_.push_back({component.path, component.frame});
        }
        document_ = alone ? std::optional(document) : std::nullopt;
    }

    void add(Entry entry) {
        document_.reset();
        entries_.push_back(std::move(entry));
    }

    std::vector<Component> components() const {
        std::vector<Component> components;
        for (const Entry& entry : entries_) {
            throwIfInterrupted();
            if (entry.frame) {
                components.push_back({entry.path, *entry.frame});
            } else {
                addFrames(entry.path, components);
            }
        }
        return components;
    }

    /// The same file and frame twice is rarely intended, as with a glob and a name.
    void warnOfRepetition(const std::vector<Component>& components) const {
        std::set<std::pair<std::string, int>> seen;
        for (const Component& each : components) {
            const std::string path = fs::path(each.path).lexically_normal().string();
            if (!seen.emplace(path, each.frame).second) {
                context_.warn(each.path, "given more than once; each makes a band");
            }
        }
    }

    void failIfMissing(const std::string& path) const {
        const bool isThere = isVirtual(path)
                                 ? Pyxis::whyNotReadable(Pyxis::fileSpecifier(path)).empty()
                                 : exists(path);
        if (missing_ == MissingFile::Fail && !isThere) {
            throw Failure(ExitCode::CannotRead, path, whyNotReadable(path));
        }
    }

    Context& context_;
    MissingFile missing_;
    bool oneArgument_;
    std::vector<Entry> entries_;
    std::optional<Pyxis::FileSpecifier> document_;  ///< that all entries come from
};

}  // namespace

Pyxis::FileSpecifier readSet(const std::vector<std::string>& arguments, Context& context,
                             MissingFile missing) {
    context.session();  // Codecs must be registered before files are looked at.
    ArgumentReader reader(context, missing, arguments.size() == 1);
    for (const std::string& argument : arguments) {
        reader.readArgument(argument);
    }
    return reader.set();
}

std::vector<Scene> readScenes(const std::vector<std::string>& paths, Context& context) {
    Session& session = context.session();
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        const std::vector<std::string> found = rastersAt(path);
        files.insert(files.end(), found.begin(), found.end());
    }
    return scenesAmong(session, files);
}

}  // namespace kestms
