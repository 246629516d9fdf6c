#include "tool/scene/Inputs.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "codec/strings/BufferText.h"
#include "host/Text.h"
#include "host/codecs/Readability.h"
#include "pyxis/FileReadDescriptor.h"
#include "pyxis/ReadImageFile.h"
#include "sets/ComponentList.h"
#include "tool/scene/InputText.h"
#include "tool/scene/RasterDirectory.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

constexpr const char* kStandardInput = "standard input";

bool exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

/// "FILE#FRAME" taken apart; nothing when the argument does not end in "#" and digits.
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

/// Null when no codec reads the file.
std::unique_ptr<Pyxis::ReadImageFileInterface> openImage(const std::string& path) {
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(path);
    const Pyxis::ImageFormatCodec* codec = nullptr;
    if (Pyxis::FileReadDescriptor::findImageFileCodec(file, codec) !=
        Pyxis::FormatDecodability::Decodable) {
        return nullptr;
    }
    return std::unique_ptr<Pyxis::ReadImageFileInterface>(codec->openImage(&file));
}

/// Frames of the file; 1 when no codec reads it.
int framesOf(const std::string& path) {
    const auto image = openImage(path);
    return image ? std::max(image->getNumFrames(), 1) : 1;
}

/// What is wrong with a text that should list components; nothing when it does.
const char* documentFault(const std::string& text, const Pyxis::FileSpecifier& document) {
    return !looksLikeXml(text)                    ? "not an XML document"
           : kest::countComponents(document) == 0 ? "the document lists no components"
                                                  : nullptr;
}

bool mayBeDocument(const std::string& path, const fs::file_status& status) {
    const std::string extension = fs::path(path).extension().string();
    // What a shell's process substitution hands over can be read only once.
    return fs::is_fifo(status) ||
           (fs::is_regular_file(status) &&
            (extension == ".xml" || extension == ".XML" || fileLooksLikeXml(path)));
}

/// Turns arguments into a set.
class ArgumentReader {
  public:
    ArgumentReader(Context& context, MissingFile missing, bool oneArgument)
        : context_(context), missing_(missing), oneArgument_(oneArgument) {}

    void readArgument(const std::string& argument) {
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

    Pyxis::FileSpecifier set() const {
        std::vector<std::string> files;
        for (const Entry& entry : entries_) {
            context_.inputs.addRaster(entry.path);
            files.push_back(entry.path);
        }
        context_.session().readAhead(files);
        // A document by itself is taken as it is.
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
    };

    void readText(const std::string& text, const std::string& name) {
        if (looksLikeXml(text)) {
            readDocument(text, name);
            return;
        }
        const auto before = entries_.size();
        for (const std::string& line : linesOf(text)) {
            if (!line.starts_with('#') || exists(line)) {
                readEntry(line);
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
        if (fs::is_directory(status)) {
            for (const std::string& path : rasterFilesIn(entry)) {
                add({path});
            }
        } else if (fs::exists(status)) {
            readFile(entry, status);
        } else if (const auto component = withFrame(entry)) {
            failIfMissing(component->path);
            add({component->path, component->frame});
        } else {
            failIfMissing(entry);
            add({entry});
        }
    }

    void readFile(const std::string& path, const fs::file_status& status) {
        if (mayBeDocument(path, status)) {
            context_.inputs.add(path);
            readDocument(readTextFile(path), path);
        } else {
            add({path});
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
            // A glob takes a product's own XML files along.
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
            const int frames = entry.frame ? 0 : framesOf(entry.path);
            if (entry.frame) {
                components.push_back({entry.path, *entry.frame});
            }
            for (int frame = 0; frame < frames; ++frame) {
                components.push_back({entry.path, frame});
            }
        }
        return components;
    }

    /// Two bands of one file and frame are seldom meant: a glob and a name beside it.
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
        if (missing_ == MissingFile::Fail && !exists(path)) {
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

std::vector<std::string> filesOf(const std::string& path) {
    std::vector<std::string> files = {path};
    const auto image = openImage(path);
    for (int i = 1; image && i < image->getNumFiles(); ++i) {
        files.push_back(Pyxis::toUtf8(image->getFile(i).string()));
    }
    return files;
}

std::vector<Component> componentsOf(const Pyxis::FileSpecifier& set) {
    const kest::ComponentList list(set);
    std::vector<Component> components(static_cast<std::size_t>(list.count()));
    for (int i = 0; i < list.count(); ++i) {
        Component& component = components[static_cast<std::size_t>(i)];
        if (const auto listed = list.get(i)) {
            component = {Pyxis::toUtf8(listed->file.string()), listed->frame};
        }
    }
    return components;
}

Pyxis::FileSpecifier setOf(const std::vector<Component>& components) {
    kest::ComponentListBuilder builder;
    for (const Component& component : components) {
        builder.append(Pyxis::fileSpecifier(component.path), component.frame);
    }
    return builder.specifier();
}

std::string whyNotReadable(const std::string& path) {
    const std::string reason = Pyxis::whyNotReadable(Pyxis::fileSpecifier(path));
    return reason.empty() ? "no codec reads it" : reason;
}

}  // namespace kestms
