// The XML tree: parse, walk, write, parse again, edit, then walk and write again. What was written
// parses to the same tree.

#include <cstring>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Input.h"
#include "sets/xml/XmlDocument.h"

namespace {

using fuzz::require;
using kest::xml::Document;
using kest::xml::Element;

/// Entities can make a document longer than a run has time for; XmlDocumentTest checks the limits.
constexpr std::size_t kLargestWritten = std::size_t{1} << 18U;

/// `top` and everything below it, in document order.
std::vector<const Element*> elementsOf(const Element* top) {
    std::vector<const Element*> elements{top};
    const Element* element = top;
    while (true) {
        if (element->child() != nullptr) {
            element = element->child();
        } else {
            while (element != top && element->ordered() == nullptr) {
                element = element->parent();
            }
            if (element == top) {
                return elements;
            }
            element = element->ordered();
        }
        elements.push_back(element);
    }
}

/// All chains of the children agree.
void checkChildren(const Document& document, const Element& parent) {
    std::map<std::string_view, std::vector<const Element*>> byName;
    std::size_t offset = 0;
    for (const Element* each = parent.child(); each != nullptr; each = each->ordered()) {
        require(each->parent() == &parent, "a child knows its parent");
        require(each->offset() >= offset, "children stand in the order of their offsets");
        offset = each->offset();
        byName[each->name()].push_back(each);
    }
    for (const auto& [name, elements] : byName) {
        require(document.child(&parent, name) == elements.front(), "the first child of a name");
        const Element* next = elements.front();
        for (const Element* element : elements) {
            require(next == element, "the chain of a name is in document order");
            next = next->next();
        }
        require(next == nullptr, "the chain of a name ends");
        const int last = static_cast<int>(elements.size()) - 1;
        require(document.index(elements.front(), last) == elements.back(), "index to the last");
        require(document.index(elements.front(), last + 1) == nullptr, "index past the last");
        require(name.empty() || document.get(&parent, {{name, last}}) == elements.back(),
                "a path to the last of a name");
    }
    std::set<std::string_view> names;
    for (const Element* each = parent.child(); each != nullptr; each = each->sibling()) {
        require(byName[each->name()].front() == each, "siblings are the first of their names");
        require(names.insert(each->name()).second, "siblings have different names");
    }
    require(names.size() == byName.size(), "every name is among the siblings");
}

void walk(const Document& document, const Element* top) {
    for (const Element* element : elementsOf(top)) {
        checkChildren(document, *element);
        std::set<std::string_view> seen;
        for (const auto& [name, value] : *element) {
            require(!seen.insert(name).second || document.attribute(element, name) == value,
                    "the first attribute of a name is the one that is found");
        }
        require(!document.attribute(element, "no such name!").has_value(), "no such attribute");
    }
}

std::size_t writtenSize(const Element* top) {
    std::size_t size = 0;
    for (const Element* element : elementsOf(top)) {
        size += element->text().size() + 2 * element->name().size();
        for (const auto& [name, value] : *element) {
            size += name.size() + value.size();
        }
    }
    return size;
}

std::string_view upToZero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

/// Whether the text is written as one run: several runs are joined over a gap when parsed.
bool isOneRun(const Element& element) {
    const std::string_view text = element.text();
    bool isOne = upToZero(text).size() == text.size();
    for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
        isOne = isOne && (each->offset() == 0 || each->offset() >= text.size());
    }
    return isOne;
}

/// The attributes of the first tree, defaults included, are those of the second.
void checkAttributes(const Document& document, const Element& element, const Element& again) {
    const auto* place = again.begin();
    std::set<std::string_view> seen;
    for (const auto& [name, value] : element) {
        if (seen.insert(name).second) {
            require(place != again.end() && place->name == name && place->value == upToZero(value),
                    "attributes are written in their order");
            ++place;
        }
    }
    for (; place != again.end(); ++place) {
        const auto declared = document.attribute(&element, place->name);
        require(declared && upToZero(*declared) == place->value,
                "further attributes are those that the document declares");
    }
}

void checkRewriting(const Document& document, const Element* top) {
    if (top->name().empty()) {
        require(document.toText(top).empty(), "nothing is written without a name");
        return;
    }
    if (writtenSize(top) > kLargestWritten) {
        return;
    }
    const std::string written = document.toText(top);
    const auto again = Document::parse(written);
    const auto elements = elementsOf(top);
    const auto elementsAgain = elementsOf(again->root());
    require(elements.size() == elementsAgain.size(), "all elements are written");
    bool allOneRun = true;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const Element& element = *elements[i];
        const Element& twin = *elementsAgain[i];
        require(element.name() == twin.name(), "names are written");
        require(i == 0 || element.parent()->name() == twin.parent()->name(),
                "elements are written below their parents");
        checkAttributes(document, element, twin);
        const bool oneRun = isOneRun(element);
        allOneRun = allOneRun && oneRun;
        require(!oneRun || element.text() == twin.text(), "texts are written");
    }
    if (allOneRun) {
        require(again->toText(again->root()) == written, "what was written stays as it is");
    }
    if (top == document.root()) {
        require(again->isStandalone() == document.isStandalone(), "standalone is written");
    }
}

/// A name that a document can hold.
std::string nameFrom(fuzz::Input& input) {
    static constexpr const char* kNames[] = {"a", "b", "image", "component"};
    if (!input.rarely()) {
        return input.oneOf(kNames);
    }
    std::string name = "n" + std::string(input.bytes());
    std::erase_if(name, [](char c) { return std::memchr(" \t\r\n/>=", c, 8) != nullptr; });
    return name;
}

/// Changes one element; returns an element that was cut out, or null.
Element* edit(Document& document, Element* element, fuzz::Input& input) {
    switch (input.below(6)) {
        case 0:
        case 1:
            document.addChild(element, nameFrom(input), input.below(16));
            break;
        case 2:
            document.setText(element, input.bytes());
            break;
        case 3:
            document.setAttribute(element, nameFrom(input), input.bytes());
            break;
        case 4:
            document.setAttribute(element, nameFrom(input), std::nullopt);
            break;
        default:
            return element == document.root() ? nullptr : document.cut(element);
    }
    return nullptr;
}

void editAndCheck(Document& document, fuzz::Input& input) {
    Element* element = document.root();
    for (int edits = 0; input.hasChoices() && edits < 64; ++edits) {
        switch (input.below(3)) {
            case 0:
                element = document.root();
                break;
            case 1:
                if (Element* child = document.child(element, nameFrom(input)); child != nullptr) {
                    element = child;
                }
                break;
            default:
                break;
        }
        if (Element* cut = edit(document, element, input); cut != nullptr) {
            walk(document, cut);
            checkRewriting(document, cut);
            element = document.root();
        }
    }
    walk(document, document.root());
    checkRewriting(document, document.root());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto document = Document::parse(input.text());
    require(Document::error(document->root()).empty(), "no fault is recorded");
    walk(*document, document->root());
    checkRewriting(*document, document->root());
    if (document->root()->name().empty()) {
        Document built("r");
        editAndCheck(built, input);
    } else {
        editAndCheck(*document, input);
    }
    return 0;
}
