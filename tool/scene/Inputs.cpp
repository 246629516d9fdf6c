#include "tool/scene/Inputs.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

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

/// Turns arguments into components.
class ArgumentReader {
  public:
    ArgumentReader(Context& context, MissingFile missing) : context_(context), missing_(missing) {}

    void readArgument(const std::string& argument) {
        if (argument == "-") {
            readLines(readText(context_.in, kStandardInput), kStandardInput);
        } else if (argument.starts_with('@') && !exists(argument)) {
            context_.inputs.add(argument.substr(1));
            readLines(readTextFile(argument.substr(1)), argument.substr(1));
        } else {
            readEntry(argument);
        }
    }

    void readLines(std::string_view text, const std::string& name) {
        const auto before = entries_.size();
        for (const std::string& line : linesOf(text)) {
            readEntry(line);
        }
        if (entries_.size() == before) {
            throw Failure(ExitCode::CannotRead, name, "the list names no files");
        }
    }

    std::vector<Component> components() const {
        std::vector<std::string> files;
        for (const Entry& entry : entries_) {
            context_.inputs.addRaster(entry.path);
            files.push_back(entry.path);
        }
        context_.session().readAhead(files);
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

  private:
    struct Entry {
        std::string path;
        std::optional<int> frame = {};  ///< none: all
    };

    void readEntry(const std::string& entry) {
        throwIfInterrupted();
        std::error_code error;
        const fs::file_status status = fs::status(entry, error);
        if (fs::is_directory(status)) {
            for (const std::string& path : rasterFilesIn(entry)) {
                entries_.push_back({path});
            }
        } else if (fs::exists(status)) {
            entries_.push_back({entry});
        } else if (const auto component = withFrame(entry)) {
            failIfMissing(component->path);
            entries_.push_back({component->path, component->frame});
        } else {
            failIfMissing(entry);
            entries_.push_back({entry});
        }
    }

    void failIfMissing(const std::string& path) const {
        if (missing_ == MissingFile::Fail && !exists(path)) {
            throw Failure(ExitCode::CannotRead, path, whyNotReadable(path));
        }
    }

    Context& context_;
    MissingFile missing_;
    std::vector<Entry> entries_;
};

Pyxis::FileSpecifier documentOf(const std::string& text, const std::string& name) {
    Pyxis::FileSpecifier set(kest::narrowBuffer(text), Pyxis::FileSpecifier::Type::Compound);
    if (kest::countComponents(set) == 0) {
        throw Failure(ExitCode::CannotRead, name, "the document lists no components");
    }
    return set;
}

/// The document with its files opened ahead.
Pyxis::FileSpecifier opened(const Pyxis::FileSpecifier& document, Context& context) {
    std::vector<std::string> files;
    for (const Component& component : componentsOf(document)) {
        context.inputs.addRaster(component.path);
        files.push_back(component.path);
    }
    context.session().readAhead(files);
    return document;
}

/// The document that a single argument names; nothing when it names no document.
std::optional<Pyxis::FileSpecifier> documentAt(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    // What a shell's process substitution hands over can be read only once.
    if (fs::is_fifo(status) || (fs::is_regular_file(status) && fileLooksLikeXml(path))) {
        const std::string text = readTextFile(path);
        if (!looksLikeXml(text)) {
            throw Failure(ExitCode::CannotRead, path, "not an XML document");
        }
        return documentOf(text, path);
    }
    const std::string extension = fs::path(path).extension().string();
    if (fs::is_regular_file(status) && (extension == ".xml" || extension == ".XML")) {
        throw Failure(ExitCode::CannotRead, path, "not an XML document");
    }
    return std::nullopt;
}

}  // namespace

Pyxis::FileSpecifier readSet(const std::vector<std::string>& arguments, Context& context,
                             MissingFile missing) {
    context.session();  // Codecs must be registered before files are looked at.
    ArgumentReader reader(context, missing);
    if (arguments.size() == 1 && arguments.front() == "-") {
        const std::string text = readText(context.in, kStandardInput);
        if (looksLikeXml(text)) {
            return opened(documentOf(text, kStandardInput), context);
        }
        reader.readLines(text, kStandardInput);
        return setOf(reader.components());
    }
    if (arguments.size() == 1) {
        if (auto document = documentAt(arguments.front())) {
            context.inputs.add(arguments.front());
            return opened(*document, context);
        }
    }
    for (const std::string& argument : arguments) {
        reader.readArgument(argument);
    }
    return setOf(reader.components());
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
