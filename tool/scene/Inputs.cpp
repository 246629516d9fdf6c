#include "tool/scene/Inputs.h"

#include <glob.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "codec/strings/BufferText.h"
#include "host/Text.h"
#include "host/codecs/Places.h"
#include "host/codecs/Readability.h"
#include "tool/scene/InputText.h"
#include "tool/scene/MetadataFile.h"
#include "tool/scene/PathParts.h"
#include "tool/scene/RasterDirectory.h"
#include "tool/scene/SceneChoice.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/TerminalText.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr const char* kStandardInput = "standard input";
constexpr std::string_view kWildcards = "*?[";

/// Whole archives of scenes have 100,000; each costs some kilobytes.
constexpr std::size_t kMostFiles = 131072;
/// Of a list: a few bytes can name a large folder again and again.
constexpr std::size_t kMostPlaces = 1000;
/// Of all documents together.
constexpr std::size_t kMostDocumentBytes = std::size_t{64} << 20U;

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

/// A line of a list without blanks around it, up to "#" at its start or after a blank; "FILE#FRAME"
/// has none.
std::string withoutComment(const std::string& line) {
    constexpr std::string_view kBlanks = " \t";
    std::size_t end = line.find('#');
    while (end != std::string::npos && end != 0 &&
           kBlanks.find(line[end - 1]) == std::string_view::npos) {
        end = line.find('#', end + 1);
    }
    const std::string text = line.substr(0, end);
    const std::size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

bool mayBeDocument(const std::string& path, const fs::file_status& status) {
    const std::string_view extension = extensionOf(path);
    // A shell's process substitution can be read only once.
    return fs::is_fifo(status) ||
           (fs::is_regular_file(status) &&
            (extension == ".xml" || extension == ".XML" ||
             // So that rasters are not opened once more than needed.
             (!Pyxis::isNamedLikeRaster(path) && fileMayListComponents(path))));
}

/// GDAL's name for an address on the network; any other argument unchanged.
std::string withoutScheme(const std::string& argument) {
    constexpr std::array<std::string_view, 3> kSchemes = {"https://", "http://", "ftp://"};
    return std::any_of(kSchemes.begin(), kSchemes.end(),
                       [&argument](auto scheme) { return argument.starts_with(scheme); })
               ? "/vsicurl/" + argument
               : argument;
}

/// The files of a pattern that the shell did not expand, in natural order; empty for other words,
/// and for a way back up behind a wildcard, by which each folder would be searched many times.
std::vector<std::string> filesMatching(const std::string& pattern) {
    std::vector<std::string> files;
    glob_t found{};
    const std::size_t wildcard = pattern.find_first_of(kWildcards);
    if (wildcard != std::string::npos && pattern.find("/..", wildcard) == std::string::npos &&
        glob(pattern.c_str(), GLOB_NOSORT, nullptr, &found) == 0) {
        for (std::size_t i = 0; i < found.gl_pathc; ++i) {
            if (isPlaceToLook(found.gl_pathv[i])) {
                const auto below = rasterFilesBelow(found.gl_pathv[i]).rasters;
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

/// The files of scenes that have no others than metadata.
std::vector<std::string> metadataWithoutRasters(const std::vector<Scene>& scenes) {
    std::vector<std::string> metadata;
    for (const Scene& scene : scenes) {
        std::vector<std::string> files = scene.files;
        for (const SetAside& each : scene.setAside) {
            files.push_back(each.path);
        }
        // Some codecs read files with the extension of a text.
        if (std::all_of(files.begin(), files.end(), [](const std::string& path) {
                return isMetadataFile(path) && !isDecodable(path);
            })) {
            metadata.insert(metadata.end(), files.begin(), files.end());
        }
    }
    return metadata;
}

/// The rasters at a path of `kestms scenes`.
std::vector<std::string> rastersAt(const std::string& path, Context& context) {
    if (Pyxis::kindOf(path) == Pyxis::PathKind::Remote) {
        context.nameRemote(path);
    }
    if (isPlaceToLook(path)) {
        FolderContents contents = rasterFilesBelow(path);
        noteUnopened(context, path, contents);
        return std::move(contents.rasters);
    }
    std::vector<std::string> files =
        exists(path) || isVirtual(path) ? std::vector<std::string>{path} : filesMatching(path);
    if (const auto component = files.empty() ? withFrame(path) : std::nullopt;
        component && (exists(component->path) || isVirtual(component->path))) {
        files = {component->path};
    }
    if (files.empty()) {
        throw Failure(ExitCode::CannotRead, path, whyNotReadable(path));
    }
    return files;
}

/// Tells files apart that are on disk, and the part of the path that is not.
using FileIdentity = std::tuple<dev_t, ino_t, std::string>;

/// Of a file that may have several paths: a document has absolute ones, and links have other names.
/// Of a member of an archive the archive counts.
FileIdentity identityOf(const std::string& path) {
    struct stat status {};
    const std::string archive = Pyxis::archiveOf(path);
    const std::string& file = archive.empty() ? path : archive;
    if (stat(file.c_str(), &status) != 0) {
        return {0, 0, path};
    }
    std::string member = path.substr(path.find(file) + file.size());
    member.erase(0, member.starts_with('}') ? 1 : 0);
    return {status.st_dev, status.st_ino, member};
}

/// Turns arguments into a set.
class ArgumentReader {
  public:
    ArgumentReader(Context& context, MissingFile missing, bool oneArgument)
        : context_(context), missing_(missing), oneArgument_(oneArgument) {}

    void readArgument(const std::string& given) {
        const std::string argument = withoutScheme(given);
        if (Pyxis::kindOf(argument) == Pyxis::PathKind::Remote) {
            const auto component = withFrame(argument);
            context_.nameRemote(component ? component->path : argument);
        }
        if (argument == "-") {
            context_.inputs.add("/dev/stdin");  // perhaps a file
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
        if (!entries_.empty()) {
            refuseTooManyFiles(entries_.back().path);
        }
        // Most files that are named are wanted.
        const std::vector<std::string> named = paths();
        context_.session().readAhead(named);
        scenes_.sortNamedFiles();
        const std::vector<std::string> files = paths();
        for (const std::string& file : files) {
            context_.inputs.addRaster(file);
        }
        if (files != named) {
            context_.session().readAhead(files);
        }
        context_.session().finishReadingAhead();
        // A document by itself is used unchanged.
        if (document_ && entries_.size() == componentsOfDocument_) {
            return *document_;
        }
        const std::vector<Component> all = components();
        warnOfRepetition(all);
        return setOf(all);
    }

  private:
    void readText(const std::string& text, const std::string& name) {
        if (looksLikeXml(text)) {
            readDocument(text, name);
            return;
        }
        oneArgument_ = false;
        const auto before = entries_.size();
        isInList_ = true;
        for (const std::string& line : linesOf(text)) {
            const std::string bare = withoutScheme(withoutComment(line));
            const std::string entry = bare != line && exists(line) ? line : bare;
            if (!entry.empty()) {
                readEntry(entry);
                refuseTooManyFiles(entry);
            }
        }
        isInList_ = false;
        if (entries_.size() == before) {
            throw Failure(ExitCode::CannotRead, name, "the list names no files");
        }
    }

    void refuseTooManyFiles(const std::string& last) const {
        if (entries_.size() > kMostFiles) {
            throw Failure(
                ExitCode::Usage, last,
                "with this the set has more than " + std::to_string(kMostFiles) + " files");
        }
    }

    /// Before a folder, a pattern or a document is looked into.
    void countPlace(const std::string& place) {
        if (isInList_ && ++places_ > kMostPlaces) {
            throw Failure(ExitCode::Usage, place,
                          "the list names more than " + std::to_string(kMostPlaces) +
                              " folders, patterns and documents");
        }
    }

    void readEntry(const std::string& entry) {
        throwIfInterrupted();
        std::error_code error;
        const fs::file_status status = fs::status(entry, error);
        if (isPlaceToLook(entry, status)) {
            countPlace(entry);
            context_.inputs.add(entry);
            scenes_.takeFolder(entry);
        } else if (fs::exists(status)) {
            readFile(entry, status);
        } else if (const auto matches = filesOfPattern(entry); !matches.empty()) {
            scenes_.takeGlob(entry, matches);
        } else if (const auto component = withFrame(entry)) {
            failIfMissing(component->path);
            entries_.push_back({component->path, component->frame, true});
        } else {
            failIfMissing(entry);
            entries_.push_back({entry, {}, true});
        }
    }

    std::vector<std::string> filesOfPattern(const std::string& pattern) {
        if (pattern.find_first_of(kWildcards) != std::string::npos) {
            countPlace(pattern);
        }
        return filesMatching(pattern);
    }

    void readFile(const std::string& path, const fs::file_status& status) {
        if (mayBeDocument(path, status)) {
            countPlace(path);
            context_.inputs.add(path);
            const std::string text = readTextFile(path);
            documentBytes_ += text.size();
            if (documentBytes_ > kMostDocumentBytes) {
                throw Failure(ExitCode::Usage, path, "with this the documents exceed 64 MiB");
            }
            readDocument(text, path);
        } else if (!oneArgument_ || !scenes_.takeSceneOf(path)) {
            entries_.push_back({path, {}, true});
        }
    }

    void readDocument(const std::string& text, const std::string& name) {
        const Pyxis::FileSpecifier document(kest::narrowBuffer(text),
                                            Pyxis::FileSpecifier::Type::Compound);
        const bool isXml = looksLikeXml(text);
        const std::vector<Component> components =
            isXml ? componentsOf(document) : std::vector<Component>();
        if (!components.empty()) {
            takeDocument(document, components);
        } else if (!oneArgument_) {
            // A glob also matches a product's XML files.
            entries_.push_back({name, {}, true});
        } else if (!scenes_.takeSceneOf(name)) {
            throw Failure(ExitCode::CannotRead, name,
                          isXml ? "the document lists no components" : "not an XML document");
        }
    }

    void takeDocument(const Pyxis::FileSpecifier& document,
                      const std::vector<Component>& components) {
        const bool alone = entries_.empty();
        for (const Component& component : components) {
            entries_.push_back({component.path, component.frame});
        }
        document_ = alone ? std::optional(document) : std::nullopt;
        componentsOfDocument_ = entries_.size();
    }

    std::vector<std::string> paths() const {
        std::vector<std::string> paths;
        for (const InputEntry& entry : entries_) {
            paths.push_back(entry.path);
        }
        return paths;
    }

    std::vector<Component> components() const {
        std::vector<Component> components;
        for (const InputEntry& entry : entries_) {
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
        struct Given {
            std::string path;
            std::size_t times = 0;
        };
        std::vector<Given> all;
        std::map<std::pair<FileIdentity, int>, std::size_t> places;
        for (const Component& each : components) {
            const auto [place, isNew] =
                places.try_emplace({identityOf(each.path), each.frame}, all.size());
            if (isNew) {
                all.push_back({each.path});
            }
            ++all[place->second].times;
        }
        for (const auto& [path, times] : all) {
            if (times > 1) {
                context_.warn(path, "given " + std::to_string(times) + " times, as many bands");
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
    std::vector<InputEntry> entries_;
    SceneChoice scenes_{context_, entries_};
    std::optional<Pyxis::FileSpecifier> document_;  ///< if the first entries come from one
    std::size_t componentsOfDocument_ = 0;
    bool isInList_ = false;
    std::size_t places_ = 0;  ///< that lists name
    std::size_t documentBytes_ = 0;
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

SceneList readScenes(const std::vector<std::string>& paths, Context& context) {
    Session& session = context.session();
    SceneList list;
    std::vector<std::string> files;
    std::set<std::string> seen;
    const auto add = [&](const std::string& file) {
        if (seen.insert(file).second) {
            files.push_back(file);
        }
    };
    const auto report = [&](const std::string& message) {
        context.fail(message);
        list.isWhole = false;
    };
    for (const std::string& path : paths) {
        try {
            const std::vector<std::string> found = rastersAt(withoutScheme(path), context);
            std::for_each(found.begin(), found.end(), add);
        } catch (const Failure& failure) {
            if (failure.code() != ExitCode::CannotRead) {
                throw;
            }
            report(failure.what());
        }
    }
    list.scenes = scenesAmong(session, files);
    std::vector<std::string> metadata = metadataWithoutRasters(list.scenes);
    if (metadata.empty()) {
        return list;
    }
    std::erase_if(files, [all = std::set(metadata.begin(), metadata.end())](const auto& file) {
        return all.contains(file);
    });
    for (const Scene& scene : scenesDescribedBy(session, metadata)) {
        std::for_each(scene.files.begin(), scene.files.end(), add);
        for (const SetAside& each : scene.setAside) {
            add(each.path);
        }
    }
    for (const std::string& path : metadata) {
        report(fileMessage(path, "no raster, and describes no scene that is there"));
    }
    list.scenes = scenesAmong(session, files);
    return list;
}

}  // namespace kestms
