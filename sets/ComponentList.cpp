#include "sets/ComponentList.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "codec/strings/BufferText.h"
#include "sets/xml/XmlDocument.h"
#include "sets/xml/XmlUtf16.h"

namespace kest {
namespace {

using Pyxis::FileSpecifier;
using Pyxis::StringBuffer;

constexpr std::string_view kRoot = "storage";
constexpr std::string_view kVersion = "version";
constexpr std::string_view kVersionValue = "1.00";
constexpr std::string_view kImage = "image";
constexpr std::string_view kComponent = "component";
constexpr std::string_view kData = "data";
constexpr std::string_view kFile = "file";
constexpr std::string_view kPath = "path";
constexpr std::string_view kFrame = "frame";

/// Texts of up to this many bytes, terminator included, count as an empty list (compatibility.md,
/// 8).
constexpr int kNearlyEmpty = 4;

/// The document's bytes, terminator included, as narrow text. UTF-16 in a buffer of bytes is full
/// of zeros, at which a conversion would cut it; the parser converts it.
StringBuffer narrowed(const StringBuffer& text) {
    const std::string_view bytes(reinterpret_cast<const char*>(text.data()),
                                 static_cast<std::size_t>(text.numDataBytes()));
    if (text.type() != Pyxis::CharacterType::Wide && xml::isUtf16(bytes)) {
        return text;
    }
    StringBuffer narrow;
    StringBuffer::convertString(text, narrow, Pyxis::CharacterType::Narrow);
    return narrow;
}

std::unique_ptr<xml::Document> parse(const StringBuffer& text) {
    auto size = static_cast<std::size_t>(text.numDataBytes());
    if (text.type() == Pyxis::CharacterType::Wide) {
        size /=
            2;  // some hosts leave text that they cannot convert unchanged (compatibility.md, 7)
    }
    return xml::Document::parse({reinterpret_cast<const char*>(text.data()), size});
}

std::unique_ptr<xml::Document> newDocument() {
    auto document = std::make_unique<xml::Document>(kRoot);
    document->setAttribute(document->root(), kVersion, kVersionValue);
    document->addChild(document->root(), kImage, 0);
    return document;
}

/// Leading white space, a sign, digits; anything else is 0. Numbers out of range saturate.
int leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return 0;
        }
    }
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) {
        return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }
    return number;
}

}  // namespace

/// A document whose list of components can be read and extended.
class ListDocument {
  public:
    explicit ListDocument(std::unique_ptr<xml::Document> document)
        : document_(std::move(document)), image_(document_->child(document_->root(), kImage)) {
        for (const xml::Element* each = document_->child(image_, kComponent); each != nullptr;
             each = each->next()) {
            components_.push_back(each);
        }
    }

    bool hasImage() const { return image_ != nullptr; }
    int count() const { return static_cast<int>(components_.size()); }

    bool get(int index, FileSpecifier& file, int& frame) const {
        const xml::Element* element = fileElement(index);
        if (element == nullptr) {
            return false;
        }
        frame = 0;
        const auto path = document_->attribute(element, kPath);
        if (!path) {
            return false;
        }
        if (const auto number = document_->attribute(element, kFrame)) {
            frame = leadingNumber(*number);
        }
        StringBuffer wide;
        StringBuffer::convertString(narrowBuffer(*path), wide, Pyxis::CharacterType::Wide);
        file.set(wide, FileSpecifier::Type::PlainFile);
        return true;
    }

    void append(const FileSpecifier& component, int frame) {
        // After every child of the image, whatever text is in between.
        std::size_t offset = components_.size();
        if (const xml::Element* last = image_->lastChild()) {
            offset = std::max(offset, last->offset());
        }
        xml::Element* element = document_->addChild(image_, kComponent, offset);
        components_.push_back(element);
        element = document_->addChild(element, kData, 0);
        element = document_->addChild(element, kFile, 0);
        document_->setAttribute(element, kPath, narrowText(narrowed(component.string())));
        document_->setAttribute(element, kFrame, std::to_string(frame));
    }

    FileSpecifier specifier() const {
        return {narrowBuffer(document_->toText(document_->root())), FileSpecifier::Type::Compound};
    }

  private:
    const xml::Element* fileElement(int index) const {
        if (index < 0) {
            // A negative index ends the path at the first component element itself
            // (compatibility.md, 6).
            return components_.empty() ? nullptr : components_.front();
        }
        if (index >= count()) {
            return nullptr;
        }
        return document_->get(components_[static_cast<std::size_t>(index)],
                              {{kData, 0}, {kFile, 0}});
    }

    std::unique_ptr<xml::Document> document_;
    xml::Element* image_;
    std::vector<const xml::Element*> components_;
};

namespace {

/// Nothing for a specifier that is plain or empty.
std::optional<ListDocument> documentOf(const FileSpecifier& specifier) {
    return specifier.type() == FileSpecifier::Type::Compound && !specifier.string().isZero()
               ? std::optional<ListDocument>(parse(narrowed(specifier.string())))
               : std::nullopt;
}

int countWithoutDocument(const FileSpecifier& specifier) {
    return specifier.string().isZero() ? 0 : 1;
}

}  // namespace

ComponentList::ComponentList(const FileSpecifier& specifier) {
    const std::optional<ListDocument> document = documentOf(specifier);
    const int count = document ? document->count() : countWithoutDocument(specifier);
    components_.resize(static_cast<std::size_t>(count));
    for (int i = 0; document && i < count; ++i) {
        Component component;
        if (document->get(i, component.file, component.frame)) {
            components_[static_cast<std::size_t>(i)] = std::move(component);
        }
    }
}

const Component* ComponentList::get(int index) const {
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < components_.size() && components_[place] ? &*components_[place]
                                                                          : nullptr;
}

Component ComponentList::at(int index) const {
    const Component* component = get(index);
    return component != nullptr ? *component : Component();
}

ComponentListBuilder::ComponentListBuilder()
    : document_(std::make_unique<ListDocument>(newDocument())) {}
ComponentListBuilder::~ComponentListBuilder() = default;

void ComponentListBuilder::append(const FileSpecifier& component, int frame) {
    document_->append(component, frame);
}

int ComponentListBuilder::count() const {
    return document_->count();
}

FileSpecifier ComponentListBuilder::specifier() const {
    return count() == 0 ? FileSpecifier() : document_->specifier();
}

int countComponents(const FileSpecifier& specifier) {
    const std::optional<ListDocument> document = documentOf(specifier);
    return document ? document->count() : countWithoutDocument(specifier);
}

bool getComponent(const FileSpecifier& specifier, int index, FileSpecifier& file, int& frame) {
    const std::optional<ListDocument> document = documentOf(specifier);
    return document && document->get(index, file, frame);
}

void appendComponent(const FileSpecifier& component, int frame, FileSpecifier& specifier) {
    const StringBuffer text = narrowed(specifier.string());
    ListDocument document(text.numDataBytes() > kNearlyEmpty ? parse(text) : newDocument());
    if (!document.hasImage()) {
        return;
    }
    document.append(component, frame);
    const FileSpecifier extended = document.specifier();
    specifier.set(extended.string(), extended.type());
}

}  // namespace kest
